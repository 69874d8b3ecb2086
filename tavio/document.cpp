#include "tavio/document.h"

#include <memory>
#include <utility>

#include "TavioIpadSDK/platform/decode_picture.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "TavioIpadSDK/platform/photo_library.h"
#include "TavioIpadSDK/platform/text.h"
#include "tavio/failure.h"
#include "tavio/input_file.h"

namespace tavio::tool {

namespace {

Document prepareText(const std::string& path, InputFile& file) {
    if (!platform::decodeUtf8(file.rest())) throw Failure(path + " is not UTF-8 text");
    return {URL::fromPath(path), std::nullopt};
}

Document preparePicture(const std::string& path, const std::string& extension, InputFile& file,
                        Console& console) {
    Bytes bytes = file.rest();
    console.stage("looking at the picture");
    auto decoded = platform::decodePicture(bytes);
    if (!decoded.picture) throw Failure(path + " is no picture to print: " + decoded.why);
    auto size = intake::photoTargetSize(platform::uprightWidth(*decoded.picture),
                                        platform::uprightHeight(*decoded.picture));
    auto photos = std::make_shared<platform::InMemoryPhotoLibrary>();
    URL url = photos->add("document." + extension, std::move(bytes));
    platform::setPhotoLibrary(std::move(photos));
    return {std::move(url), size};
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
    return {std::move(url), size};
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
