// A ticket: its settings, and what is printed on it, in order. A value that can be copied, kept and
// used on any thread. Composing checks nothing and never fails: encode() (job.h) tells every
// problem.
//
//   Ticket ticket({.stock = Stock::cinema()});
//   ticket.picture(Source::file("photo.jpg"), {.row = 10, .column = 20})
//         .text("Row F, seat 12", {.row = 400, .column = 20})
//         .finish(Finish::kCut);
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/picture.h"
#include "TavioIpadSDK/settings/stock_table.h"
#include "tavio/printing/code_options.h"
#include "tavio/printing/draw_options.h"
#include "tavio/printing/place.h"
#include "tavio/printing/shape_options.h"
#include "tavio/printing/source.h"
#include "tavio/printing/words_options.h"

namespace tavio::printing {

// ---- The ticket as a whole ----------------------------------------------------------------------

// The paper. Copies are cheap.
class TAVIO_API Stock {
  public:
    // Row `index` of the table of nine stocks (TavioIpadSDK/settings/stock_table.h), from 0.
    static constexpr Stock ofIndex(std::int32_t index) { return {index, {}}; }
    static constexpr Stock concert() { return ofIndex(0); }     // 5.5 x 2.0 inches
    static constexpr Stock cinema() { return ofIndex(1); }      // 2.0 x 3.25 inches
    static constexpr Stock creditCard() { return ofIndex(2); }  // 3.37 x 2.13 inches
    static constexpr Stock receipt() { return ofIndex(3); }     // 8.0 x 3.25 inches

    // Any other paper, in inches, as it lies in landscape: more than 0, at most kMaxInches.
    static constexpr Stock ofInches(double width, double height) {
        return {kCustom, {width, height}};
    }

    static constexpr double kMaxInches = 27;

    bool isCustom() const { return index_ == kCustom; }
    std::int32_t index() const { return index_; }         // of the table; -1 for a custom stock
    settings::StockSize inches() const { return size_; }  // of a custom stock

    bool operator==(const Stock&) const = default;

  private:
    static constexpr std::int32_t kCustom = -1;

    constexpr Stock(std::int32_t index, settings::StockSize size) : index_(index), size_(size) {}

    std::int32_t index_;
    settings::StockSize size_;
};

enum class Orientation : std::uint8_t { kLandscape, kPortrait };

struct TAVIO_API TicketSettings {
    Stock stock = Stock::concert();
    std::int32_t resolution = 300;  // dots per inch: 200, 300 or 600
    Orientation orientation = Orientation::kLandscape;
    std::string path = "<P1>";  // print path command, UTF-8

    bool operator==(const TicketSettings&) const = default;
};

// ---- Its elements -------------------------------------------------------------------------------

// The end of a ticket: how it leaves the printer.
enum class Finish : std::uint8_t { kNothing, kCut, kEject };

namespace element {

enum class DocumentKind : std::uint8_t { kAny, kPage, kPicture };

struct TAVIO_API Document {
    DocumentKind kind = DocumentKind::kAny;
    Source source;
    Place place;
    DrawOptions options;
};
struct TAVIO_API Pixels {
    std::shared_ptr<const platform::Picture> picture;
    Place place;
    DrawOptions options;
};
struct TAVIO_API PlainText {
    std::string text;
    Place place;
};
struct TAVIO_API PrinterText {
    std::string text;
};
struct TAVIO_API PrinterTextFile {
    Source source;
};
struct TAVIO_API RawBytes {
    std::shared_ptr<const Bytes> bytes;
};
struct TAVIO_API StoredLogo {
    std::int32_t number = 0;
    Place place;
};
struct TAVIO_API StoreLogo {
    std::int32_t number = 0;
    std::variant<Document, Pixels> picture;  // its place has no meaning
};
struct TAVIO_API End {
    Finish finish = Finish::kNothing;
};
struct TAVIO_API Code {
    CodeKind kind = CodeKind::kQr;
    std::string data;
    Place place;
    CodeOptions options;
};
struct TAVIO_API Words {
    std::string text;
    Place place;
    WordsOptions options;
};
struct TAVIO_API Line {
    Place place;
    std::int32_t length = 0;
    LineOptions options;
};
struct TAVIO_API Box {
    Place place;
    Size size;
    BoxOptions options;
};

}  // namespace element

using Element = std::variant<element::Document, element::Pixels, element::PlainText,
                             element::PrinterText, element::PrinterTextFile, element::RawBytes,
                             element::StoredLogo, element::StoreLogo, element::End, element::Code,
                             element::Words, element::Line, element::Box>;

// ---- The ticket ---------------------------------------------------------------------------------

class TAVIO_API Ticket {
  public:
    explicit Ticket(TicketSettings settings = {}) : settings_(std::move(settings)) {}

    // A page of a PDF document; without options the first, at its own size in inches, or smaller if
    // the ticket has not as much room.
    Ticket& page(Source document, Place place = {}, DrawOptions options = {});

    // A PNG, JPEG or BMP picture, recognised by its content; without options at one dot a pixel, or
    // smaller if the ticket has not as much room.
    Ticket& picture(Source file, Place place = {}, DrawOptions options = {});

    // A picture in memory; it must not be changed afterwards. Null is a problem of encode().
    Ticket& picture(std::shared_ptr<const platform::Picture> pixels, Place place = {},
                    DrawOptions options = {});

    // A page or a picture, whichever the content is.
    Ticket& document(Source source, Place place = {}, DrawOptions options = {});

    // A code for scanners, each of whose modules is a whole number of dots. Its top left corner, quiet
    // zone included, lies at the place. Data that a code of this kind cannot hold is a problem, and so
    // is a box that is too small: the sentence names the smallest that would do.
    Ticket& code(CodeKind kind, std::string data, Place place = {}, CodeOptions options = {});

    // Words in any script, UTF-8, in one or more lines ("\n"); long ones are wrapped. Letters that no
    // font has are a problem that names them. The program that draws letters must be there.
    Ticket& words(std::string utf8, Place place = {}, WordsOptions options = {});

    // A line of this length in dots that begins at the place, which is its top left corner.
    Ticket& line(Place place, std::int32_t length, LineOptions options = {});

    // A frame, or a filled box, whose top left corner is at the place.
    Ticket& box(Place place, Size size, BoxOptions options = {});

    // Text in the printer's own face, one or more lines ("\n"), beginning at the place. It never
    // sends a command. Printable are the characters from U+0020 to U+007E except "<"; any other
    // character is a problem that names it.
    Ticket& text(std::string utf8, Place place);

    // Text for the printer as it is, on purpose with commands, UTF-8: "<RC100,50>Row F".
    Ticket& printerText(std::string text);

    // The same from a file.
    Ticket& printerText(Source file);

    // Bytes for the printer as they are, e.g. of a job file. Null is a problem of encode().
    Ticket& bytes(std::shared_ptr<const Bytes> bytes);

    // Prints the logo that is stored in the printer as `number`.
    Ticket& logo(std::int32_t number, Place place = {});

    // Stores a page or a picture in the printer as logo `number`. The classic way does not store its
    // top 8 rows.
    Ticket& storeLogo(std::int32_t number, Source source, DrawOptions options = {});
    Ticket& storeLogo(std::int32_t number, std::shared_ptr<const platform::Picture> pixels,
                      DrawOptions options = {});

    // Cuts or ejects what has been printed so far; kNothing does nothing. A ticket without it stays
    // in the printer, and what comes next is printed on the same paper.
    Ticket& finish(Finish finish);

    const TicketSettings& settings() const { return settings_; }
    const std::vector<Element>& elements() const { return elements_; }

    // True if there was no memory for an element; encode() then gives kOverMemory.
    bool isIncomplete() const { return isIncomplete_; }

  private:
    Ticket& add(Element element);

    TicketSettings settings_;
    std::vector<Element> elements_;
    bool isIncomplete_ = false;
};

}  // namespace tavio::printing
