// The warnings about a page or picture that is printed or stored the classic way.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/intake/dot_size.h"
#include "tavio/printing/layout.h"
#include "tavio/printing/losses.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// "300 x 200 dots"
std::string dotsText(intake::DotSize size);

// With one decimal, rounded down so that a number below a limit does not read as the limit.
std::string decimalText(double number);

// The height in dots of the smallest face that is read without errors: 5 points at 200 dots an inch.
inline constexpr double kMinFaceDots = 13.8;

// That a page has text of this size in points that cannot be read when it is drawn at a dot a point; 0
// for a page without text.
std::optional<Warning> coarseText(const std::string& name, double points);

// That what is printed there reaches past the ticket's edge, if it does. name: in the sentence.
std::optional<Warning> beyondTicket(const Rectangle& rectangle, const Layout& layout,
                                    const std::string& name = "the picture");

// A picture as it was encoded.
struct EncodedPicture {
    intake::DotSize size;
    Place place;  // 0, 0 for a logo, whose place is not known yet
    bool isLogo = false;
    Losses losses;
    bool isTransparent = false;  // in part
};

// Not yet assigned to an element. A picture of which nothing prints has no other losses.
std::vector<Warning> pictureWarnings(const EncodedPicture& picture, const Layout& layout);

}  // namespace tavio::printing
