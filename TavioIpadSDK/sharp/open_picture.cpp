#include "TavioIpadSDK/sharp/open_picture.h"

#include <cstddef>
#include <exception>
#include <functional>
#include <span>
#include <utility>

#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/sharp/cropped_rows.h"
#include "TavioIpadSDK/sharp/dots.h"
#include "TavioIpadSDK/sharp/grey_levels.h"
#include "TavioIpadSDK/sharp/open_grey.h"
#include "TavioIpadSDK/sharp/resampled_grey.h"
#include "TavioIpadSDK/sharp/turned_rows.h"

namespace tavio::sharp {
namespace {

using pictures::StoredGrey;

// Opens the picture, of which nothing has been read yet.
using Opener = std::function<std::unique_ptr<StoredGrey>()>;

Window windowOf(const Fitted& fitted) {
    return {fitted.left, fitted.top, static_cast<std::int32_t>(fitted.windowWidth),
            static_cast<std::int32_t>(fitted.windowHeight)};
}

// Permits the source to be decoded at a size not far above that at which it is printed.
void mayShrinkTo(const Fitted& fitted, StoredGrey& source) {
    if (swapsSides(turnedOrientation(source.orientation(), fitted.quarterTurns))) {
        source.mayShrinkTo(fitted.height, fitted.width);
    } else {
        source.mayShrinkTo(fitted.width, fitted.height);
    }
}

bool isEnlargedByWholeNumbers(const GreyRows& rows, const Fitted& fitted) {
    return fitted.width % rows.width() == 0 && fitted.height % rows.height() == 0;
}

// The picture's rows at the size at which they are printed.
std::unique_ptr<GreyRows> printedRows(const Opener& open, const Fitted& fitted,
                                      bool mayUseThreads) {
    std::unique_ptr<StoredGrey> source = open();
    mayShrinkTo(fitted, *source);
    const bool isPhoto = source->isPhoto();
    auto rows = turnedRows(std::move(source), fitted.quarterTurns, mayUseThreads);
    const Window window = windowOf(fitted);
    if (rows->width() == fitted.width && rows->height() == fitted.height)
        return croppedRows(std::move(rows), window);
    const GreyLevels levels = isPhoto ? GreyLevels::kMany : greyLevels(*open());
    const auto width = static_cast<std::int32_t>(fitted.width);
    const auto height = static_cast<std::int32_t>(fitted.height);
    if (levels != GreyLevels::kMany && isEnlargedByWholeNumbers(*rows, fitted))
        return enlargedGrey(std::move(rows), width, height, window);
    if (levels == GreyLevels::kBlackAndWhite)
        return resampledBlackAndWhite(std::move(rows), width, height, window);
    return resampledGrey(std::move(rows), width, height, window);
}

// Begins to decode when the first row is asked for, and repeats its first failure.
class PrintedPicture : public GreyRows {
  public:
    // keepsAlive: the file or the picture.
    PrintedPicture(std::shared_ptr<const void> keepsAlive, Opener open, const Fitted& fitted,
                   bool mayUseThreads)
        : keepsAlive_(std::move(keepsAlive)),
          open_(std::move(open)),
          fitted_(fitted),
          mayUseThreads_(mayUseThreads) {}

    std::int32_t width() const override { return static_cast<std::int32_t>(fitted_.windowWidth); }
    std::int32_t height() const override { return static_cast<std::int32_t>(fitted_.windowHeight); }

    std::span<const Byte> next(std::int32_t maxRows) override {
        if (failure_) std::rethrow_exception(failure_);
        try {
            if (!rows_) rows_ = printedRows(open_, fitted_, mayUseThreads_);
            return rows_->next(maxRows);
        } catch (...) {
            failure_ = std::current_exception();
            throw;
        }
    }

  private:
    std::shared_ptr<const void> keepsAlive_;
    Opener open_;
    Fitted fitted_;
    bool mayUseThreads_;
    std::unique_ptr<GreyRows> rows_;  // null until the first row is asked for
    std::exception_ptr failure_;
};

SharpPicture refused(std::string why, pictures::Refusal refusal) {
    return {nullptr, {}, 0, 0, std::move(why), refusal};
}

// Short enough to need no memory of its own.
SharpPicture outOfMemory() {
    return refused("out of memory", pictures::Refusal::kOutOfMemory);
}

bool isTooLarge(const Fitted& fitted) {
    return fitted.width > kMaxDots || fitted.height > kMaxDots ||
           fitted.windowWidth * fitted.windowHeight > kMaxDots;
}

SharpPicture fittedPicture(std::shared_ptr<const void> keepsAlive, Opener open,
                           const StoredGrey& source, const FitRules& rules, bool mayUseThreads) {
    const bool isSwapped = swapsSides(source.orientation());
    SharpPicture picture;
    picture.width = isSwapped ? source.height() : source.width();
    picture.height = isSwapped ? source.width() : source.height();
    picture.fitted = fitted(picture.width, picture.height, rules);
    if (isTooLarge(picture.fitted))
        return refused("the picture is printed with too many dots", pictures::Refusal::kTooLarge);
    picture.rows = std::make_unique<PrintedPicture>(std::move(keepsAlive), std::move(open),
                                                    picture.fitted, mayUseThreads);
    return picture;
}

}  // namespace

SharpPicture openPicture(std::shared_ptr<const Bytes> file, const FitRules& rules,
                         bool mayUseThreads) noexcept {
    try {
        const std::span<const Byte> bytes =
            file ? std::span<const Byte>(*file) : std::span<const Byte>();
        pictures::OpenedGrey opened = openGrey(bytes);
        if (!opened.source) return refused(std::move(opened.why), opened.refusal);
        // What could be opened once can be opened again, unless memory has run out.
        auto open = [bytes] {
            pictures::OpenedGrey again = openGrey(bytes);
            if (!again.source) throw pictures::DamagedPicture(again.why);
            return std::move(again.source);
        };
        return fittedPicture(std::move(file), std::move(open), *opened.source, rules,
                             mayUseThreads);
    } catch (const std::exception&) {
        return outOfMemory();
    }
}

SharpPicture openPicture(std::shared_ptr<const pictures::Picture> picture, const FitRules& rules,
                         bool mayUseThreads) noexcept {
    try {
        if (!picture || picture->pixels.empty())
            return refused("the picture has no pixels", pictures::Refusal::kDamaged);
        const pictures::Picture& pixels = *picture;
        const auto open = [&pixels] { return greyOf(pixels); };
        return fittedPicture(std::move(picture), open, *open(), rules, mayUseThreads);
    } catch (const std::exception&) {
        return outOfMemory();
    }
}

}  // namespace tavio::sharp
