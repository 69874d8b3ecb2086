#include "tools/tavio/document.h"

#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "TavioIpadSDK/platform/photo_library.h"
#include "TavioIpadSDK/platform/text.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"

namespace tavio::tool {

namespace {

Document prepareText(const std::string& path, InputFile& file) {
    if (!platform::decodeUtf8(file.rest())) throw Failure(path + " is not UTF-8 text");
    Document document;
    document.url = URL::fromPath(path);
    return document;
}

std::string refusalOf(const std::string& path, const std::string& why) {
    return path + " is no picture to print: " + why;
}

// Decodes the whole picture to find damage.
std::string damageOf(const std::string& path, const std::shared_ptr<const Bytes>& bytes) {
    constexpr std::int32_t kRows = 16;
    auto opened = pictures::openPicture(bytes);
    if (!opened.rows) return refusalOf(path, opened.why);
    try {
        while (!opened.rows->next(kRows).empty()) continue;
    } catch (const pictures::DamagedPicture& damage) {
        return refusalOf(path, damage.what());
    } catch (const std::bad_alloc&) {
        return refusalOf(path, "out of memory");
    }
    return "";
}

Document preparePicture(const std::string& path, const std::string& extension, InputFile& file,
                        Console& console) {
    auto bytes = std::make_shared<const Bytes>(file.rest());
    console.stage("looking at the picture");
    auto opened = pictures::openPicture(bytes);
    if (!opened.rows) throw Failure(refusalOf(path, opened.why));
    auto size = intake::photoTargetSize(opened.rows->width(), opened.rows->height());
    auto photos = std::make_shared<platform::InMemoryPhotoLibrary>();
    URL url = photos->share("document." + extension, bytes);
    platform::setPhotoLibrary(std::move(photos));
    return {std::move(url), size, [path, bytes] { return damageOf(path, bytes); }};
}

Document preparePage(const std::string& path, Console& console) {
    console.stage("drawing the page");
    URL url = URL::fromPath(path);
    auto drawn = std::make_shared<platform::PdfPageResult>(platform::drawPdfPageWithHelper(url));
    if (!drawn->page) {
        throw Failure(path + " cannot be drawn: " + platform::describe(drawn->outcome));
    }
    auto size = intake::pageTargetSize(drawn->page->width, drawn->page->height);
    platform::setPdfPageSource([drawn](const URL&) { return std::exchange(*drawn, {}); });
    Document document;
    document.url = std::move(url);
    document.size = size;
    return document;
}

}  // namespace

Document prepareDocument(const std::string& path, Use use, const std::string& replaced,
                         Console& console) {
    console.stage("reading");
    InputFile file(path);
    std::string extension = URL::fromPath(path).pathExtension();
    DocumentKind kind = documentKind(path, extension, use);
    if (!replaced.empty() && file.isAt(replaced)) {
        throw Failure(path + " is the document itself, so choose another place with --to");
    }
    switch (kind) {
        case DocumentKind::kText:
            return prepareText(path, file);
        case DocumentKind::kPdf:
            return preparePage(path, console);
        case DocumentKind::kPicture:
            break;
    }
    return preparePicture(path, extension, file, console);
}

}  // namespace tavio::tool
