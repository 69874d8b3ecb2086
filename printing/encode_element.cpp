#include "tavio/printing/encode_element.h"

#include <exception>
#include <new>
#include <string_view>
#include <utility>
#include <variant>

#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/platform/utf8.h"
#include "TavioIpadSDK/session/commands.h"
#include "tavio/printing/box.h"
#include "tavio/printing/classic_drawing.h"
#include "tavio/printing/classic_graphics.h"
#include "tavio/printing/code_dots.h"
#include "tavio/printing/placed_dots.h"
#include "tavio/printing/plain_text.h"
#include "tavio/printing/read_source.h"
#include "tavio/printing/shape_dots.h"
#include "tavio/printing/sharp_drawing.h"
#include "tavio/printing/sharp_graphics.h"
#include "tavio/printing/words_dots.h"

namespace tavio::printing {
namespace {

using Result = Expected<EncodedParts, Problem>;

// Options that have no meaning in the classic way are refused rather than ignored.
std::optional<Problem> problemOf(const DrawOptions& options) {
    DrawOptions plain;
    plain.page = options.page;
    plain.blackAndWhite = options.blackAndWhite;
    plain.classic = options.classic;
    if (!options.classic || options == plain) return std::nullopt;
    return problem(ProblemKind::kBadSetting,
                   "the classic way has no fit, turn, align, margin, threshold or tone: leave them "
                   "out")
        .value();
}

class ElementEncoder {
  public:
    ElementEncoder(const Layout& layout, const Encoding& encoding, Bytes& bytes)
        : layout_(layout), options_(encoding.options), encoding_(encoding), bytes_(bytes) {}

    Result operator()(const element::Document& document) const {
        return appendDrawing(document, document.place, std::nullopt);
    }

    Result operator()(const element::Pixels& pixels) const {
        return appendDrawing(pixels, pixels.place, std::nullopt);
    }

    Result operator()(const element::StoreLogo& logo) const {
        return std::visit(
            [&](const auto& picture) { return appendDrawing(picture, {}, logo.number); },
            logo.picture);
    }

    Result operator()(const element::PlainText& plain) const {
        const auto text = plainText(plain.text, layout_, plain.place);
        if (!text) return tl::unexpected(text.error());
        return appendText(*text);
    }

    Result operator()(const element::PrinterText& printer) const {
        if (!platform::isUtf8(printer.text))
            return problem(ProblemKind::kNotUtf8, "the text to send is not UTF-8");
        return appendText(printer.text);
    }

    Result operator()(const element::PrinterTextFile& file) const {
        const auto read = readSource(file.source, options_.maxFileBytes);
        if (!read) return tl::unexpected(read.error());
        const std::string_view text(reinterpret_cast<const char*>((*read)->data()),
                                    (*read)->size());
        if (!platform::isUtf8(text))
            return problem(ProblemKind::kNotUtf8, shownName(file.source) + " is not UTF-8 text");
        return appendText(text);
    }

    Result operator()(const element::RawBytes& raw) const {
        if (!raw.bytes) {
            return problem(ProblemKind::kDamaged,
                           "there are no bytes to send: the pointer is null");
        }
        bytes_.insert(bytes_.end(), raw.bytes->begin(), raw.bytes->end());
        return EncodedParts{};
    }

    Result operator()(const element::StoredLogo& logo) const {
        return appendText(
            encoder::printLogoCommands(logo.number, logo.place.row, logo.place.column));
    }

    Result operator()(const element::End& end) const {
        if (end.finish == Finish::kCut) return appendText(CUT);
        if (end.finish == Finish::kEject) return appendText(EJECT);
        return EncodedParts{};
    }

    Result operator()(const element::Code& code) const {
        return appendDrawn(codeDots(code, layout_, options_));
    }

    Result operator()(const element::Words& words) const {
        return appendDrawn(wordsDots(words, layout_, options_));
    }

    Result operator()(const element::Line& line) const {
        return appendDrawn(lineDots(line, layout_));
    }

    Result operator()(const element::Box& box) const { return appendDrawn(boxDots(box, layout_)); }

  private:
    Result appendDrawn(Expected<PlacedDots, Problem> drawn) const {
        if (!drawn) return tl::unexpected(std::move(drawn.error()));
        return appendPlaced(std::move(*drawn), layout_, bytes_);
    }

    Result appendText(std::string_view text) const {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return EncodedParts{};
    }

    // picture: element::Document or element::Pixels.
    template <typename Picture>
    Result appendDrawing(const Picture& picture, Place place,
                         std::optional<std::int32_t> logo) const {
        if (auto problem = problemOf(picture.options)) return tl::unexpected(std::move(*problem));
        return picture.options.classic ? appendClassically(picture, place, logo)
                                       : appendSharply(picture, place, logo);
    }

    template <typename Picture>
    Result appendSharply(const Picture& picture, Place place,
                         std::optional<std::int32_t> logo) const {
        DrawOptions options = picture.options;
        if (!options.tone.dotGain) options.tone.dotGain = options_.calibration.tone;
        const auto box = boxOf(layout_, place, options.margin);
        if (!box) return tl::unexpected(box.error());
        auto drawn =
            sharpDrawingOf(picture, layout_.resolution, fitRules(*box, options), encoding_);
        if (!drawn) return tl::unexpected(drawn.error());
        return appendSharp(std::move(*drawn), layout_,
                           {*box, options, logo, options_.mayUseThreads}, bytes_);
    }

    template <typename Picture>
    Result appendClassically(const Picture& picture, Place place,
                             std::optional<std::int32_t> logo) const {
        auto drawn = classicDrawingOf(picture, layout_, options_);
        if (!drawn) return tl::unexpected(drawn.error());
        EncodedParts parts;
        parts.size = Size{drawn->size.width, drawn->size.height};
        if (!logo) parts.rectangle = rectangleAt(layout_, place, *parts.size);
        parts.page = drawn->page;
        auto warnings = appendClassic(
            std::move(*drawn), layout_,
            {place, picture.options.blackAndWhite, logo, options_.mayUseThreads}, bytes_);
        if (!warnings) return tl::unexpected(warnings.error());
        parts.warnings = std::move(*warnings);
        return parts;
    }

    const Layout& layout_;
    const EncodeOptions& options_;
    const Encoding& encoding_;
    Bytes& bytes_;
};

}  // namespace

Result appendElement(const Element& element, const Layout& layout, const Encoding& encoding,
                     Bytes& bytes) {
    try {
        return std::visit(ElementEncoder(layout, encoding, bytes), element);
    } catch (const std::bad_alloc&) {
        return problem(ProblemKind::kOverMemory, "there is not enough memory for this");
    } catch (const std::length_error&) {
        return problem(ProblemKind::kTooLarge, "this is too large to be printed");
    }
}

}  // namespace tavio::printing
