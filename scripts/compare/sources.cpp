#include "sources.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include "record.h"
#include "work_folder.h"

namespace compare {
namespace {

namespace platform = tavio::platform;
using tavio::Byte;

enum class Answer { kWhole, kPart, kNothing, kNoAsset, kFailure, kThrow };

// A file that is read piece by piece; `delivered` bytes of it come.
class PartialFile : public platform::AssetRepresentation {
  public:
    PartialFile(Bytes file, std::size_t delivered)
        : file_(std::move(file)), delivered_(std::min(delivered, file_.size())) {}

    std::uint64_t size() const override { return file_.size(); }

    std::size_t getBytes(std::span<Byte> into, std::uint64_t offset,
                         std::string* error) const override {
        if (offset >= delivered_) {
            *error = "the end";
            return 0;
        }
        const auto start = static_cast<std::size_t>(offset);
        const std::size_t count = std::min(into.size(), delivered_ - start);
        std::copy_n(file_.begin() + static_cast<std::ptrdiff_t>(start), count, into.begin());
        return count;
    }

  private:
    Bytes file_;
    std::size_t delivered_;
};

// Answers every lookup in the same way.
class OddPhotoLibrary : public platform::PhotoLibrary {
  public:
    OddPhotoLibrary(Answer answer, Bytes file) : answer_(answer), file_(std::move(file)) {}

    void assetForURL(const platform::Url& /*url*/, platform::AssetResultHandler onResult,
                     platform::AssetFailureHandler onFailure) override {
        switch (answer_) {
            case Answer::kWhole:
                return onResult(std::make_shared<PartialFile>(file_, file_.size()));
            case Answer::kPart:
                return onResult(std::make_shared<PartialFile>(file_, file_.size() / 2));
            case Answer::kNothing:
                return onResult(std::make_shared<PartialFile>(file_, 0));
            case Answer::kNoAsset:
                return onResult(nullptr);
            case Answer::kFailure:
                return onFailure("the lookup has failed");
            case Answer::kThrow:
                throw std::runtime_error("the photo library has failed");
        }
    }

  private:
    Answer answer_;
    Bytes file_;
};

tavio::URL oddUrl(const std::string& name) {
    return tavio::URL::fromText("assets-library://asset/" + name + "?id=7&ext=png");
}

tavio::URL offerFromFolder(const Document& photo) {
    writeFile("photo-" + photo.name, photo.file);
    platform::setPhotoLibrary(std::make_shared<platform::FolderPhotoLibrary>("."));
    return platform::FolderPhotoLibrary::urlOf("photo-" + photo.name);
}

// A number of points with or without decimals.
double points(Random& random, int min, int max) {
    const double whole = random.between(min, max);
    return random.chance(50) ? whole : whole + random.between(1, 99) / 100.0;
}

// The pixels that the crop box touches; a page out of form has too few of them.
void drawPicture(Random& random, platform::PdfPage& page) {
    page.left = static_cast<std::int32_t>(std::floor(page.x));
    page.top = static_cast<std::int32_t>(std::floor(-page.y));
    auto& picture = page.picture;
    picture.width = static_cast<std::int32_t>(std::ceil(page.x + page.width)) - page.left;
    picture.height = static_cast<std::int32_t>(std::ceil(page.height - page.y)) - page.top;
    const Pixels pixels = randomPixels(random, picture.width, picture.height);
    for (std::size_t at = 0; at < pixels.samples.size(); at += 4) {
        const Byte* colours = pixels.samples.data() + at;
        picture.pixels.push_back(
            platform::premultipliedPixel(colours[0], colours[1], colours[2], 255));
    }
    if (random.chance(2)) picture.pixels.pop_back();
}

platform::PdfPageResult drawnPage(Random& random) {
    platform::PdfPage page;
    page.width = points(random, 1, random.chance(90) ? 200 : 700);
    page.height = points(random, 1, random.chance(90) ? 200 : 700);
    if (random.chance(30)) {
        page.x = points(random, -20, 40);
        page.y = points(random, -20, 40);
    }
    drawPicture(random, page);
    return {platform::PdfOutcome::kDrawn, std::move(page)};
}

}  // namespace

void recordNotices() {
    platform::setNoticeHandler([](const platform::Notice& notice) {
        record().line("notice: " + notice.title + " | " + notice.message + " | " + notice.button);
    });
}

tavio::URL offerPhoto(Random& random, const Document& photo) {
    const int percent = random.between(1, 100);
    if (percent <= 80) {
        auto library = std::make_shared<platform::InMemoryPhotoLibrary>();
        platform::setPhotoLibrary(library);
        return library->add(photo.name, photo.file);
    }
    if (percent <= 86 && photo.name.find('/') == std::string::npos) return offerFromFolder(photo);
    if (percent <= 88) {
        platform::setPhotoLibrary(nullptr);
        return oddUrl(photo.name);
    }
    const Answer answer =
        random.pick({Answer::kWhole, Answer::kWhole, Answer::kPart, Answer::kNothing,
                     Answer::kNoAsset, Answer::kFailure, Answer::kThrow});
    record().line("the photo library answers oddly: " + std::to_string(static_cast<int>(answer)));
    platform::setPhotoLibrary(std::make_shared<OddPhotoLibrary>(answer, photo.file));
    return oddUrl(photo.name);
}

void offerDrawnPage(Random& random) {
    platform::PdfPageResult result{platform::PdfOutcome::kEncrypted, std::nullopt};
    if (random.chance(95)) result = drawnPage(random);
    platform::setPdfPageSource([result](const tavio::URL&) { return result; });
}

void offerFilePages() {
    platform::setPdfPageSource({});
}

}  // namespace compare
