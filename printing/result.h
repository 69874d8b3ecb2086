// Results of this library: a value, or the problems that prevented it. No function throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tl/expected.hpp>
#include <vector>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::printing {

// A value or an error. It is the same type in an application of C++20 and in one of a later
// standard, because a function's symbol holds it.
template <typename Value, typename Error>
using Expected = tl::expected<Value, Error>;

// The kind of a problem, for an application to switch on. Kinds may be added.
enum class ProblemKind : std::uint8_t {
    kBadSetting,         // a stock, a resolution or a path that no ticket can have
    kNotUtf8,            // a text or a text file is not UTF-8
    kUnprintableLetter,  // a text has a letter that its face does not have
    kNotFound,           // there is no such file
    kNotReadable,        // a folder, a device, or no right to read it
    kUnknownFormat,      // the file is of no kind that can be printed here
    kDamaged,            // the file is cut short or damaged
    kEncrypted,          // the document needs a password
    kNoSuchPage,         // the document has fewer pages
    kTooLarge,           // a file, a page, a picture or a job above a limit
    kOverTime,           // drawing the page took longer than allowed
    kOverMemory,         // there is not enough memory, or drawing the page took more than allowed
    kHelperMissing,      // the program that draws pages cannot be started
    kHelperFailed,       // the program that draws pages died, or gave a malformed answer
    kNoDots,             // the page or picture comes to 0 dots
    kBadPlace,           // the place, or the picture at it, lies where the printer cannot print
    kCancelled,          // the application asked to stop
    kBadData,            // a code of this kind cannot hold this data
    kSmallBox,           // a code or words do not fit into their box
    kNoFace,             // there is no such face, or the file is no font
};

// What prevents a job. Nothing is printed then.
struct TAVIO_API Problem {
    ProblemKind kind = ProblemKind::kBadSetting;

    // The place in the arguments of encode(), both from 0: the ticket, and its element. No element
    // if the ticket as a whole is meant.
    std::size_t ticket = 0;
    std::optional<std::size_t> element;

    // Cause and cure in one sentence without a full stop, e.g. "photo.jpg does not exist".
    std::string sentence;
};

// One or more, in the order of the tickets and their elements; none only if there was not even memory
// for one.
using Problems = std::vector<Problem>;

enum class WarningKind : std::uint8_t {
    kBeyondTicket,  // reaches past the ticket's edge by `count` dots
    kFewRows,       // fewer than 8 rows (16 for a logo): nothing of it prints
    kRowsLost,      // `count` rows with black dots are not printed: they do not fill a band of 8
    kColumnsLost,   // `count` columns with black dots are not printed: padding blanks them
    kTransparentParts,  // transparent parts of the picture print black
    kMorePages,         // the document has `count` pages more than were printed
    kSmallModule,  // a code has modules of `count` tenths of a dot: it may not scan; not looked
                   // for above 2^23 dots
    kSmallText,    // a page has text drawn with a face of `count` dots in height: hard to read
    kShrunkPage,   // a page is printed at `count` percent of its own size
};

// What a person should know of a job that can be printed all the same.
struct TAVIO_API Warning {
    WarningKind kind = WarningKind::kBeyondTicket;
    std::size_t ticket = 0;   // as in Problem
    std::size_t element = 0;  // as in Problem
    std::int64_t count = 0;   // of what WarningKind says, else 0
    std::string sentence;     // without a full stop
};

// The names as they stand in JSON and logs: "not-found", "beyond-ticket".
TAVIO_API const char* nameOf(ProblemKind kind) noexcept;
TAVIO_API const char* nameOf(WarningKind kind) noexcept;

}  // namespace tavio::printing
