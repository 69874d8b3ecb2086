#include "tools/tavio/ticket_json.h"

#include <array>
#include <cstddef>
#include <sstream>

#include "tools/common/json.h"

namespace tavio::tool {

namespace {

using command_line::jsonArray;
using command_line::JsonObject;

// In the order of printing::Element.
constexpr std::array<const char*, 13> kElementKinds{
    "document", "pixels", "text",       "printer-text", "printer-text-file",
    "bytes",    "logo",   "store-logo", "finish",       "code",
    "words",    "line",   "box"};
static_assert(kElementKinds.size() == std::variant_size_v<printing::Element>);

std::string elementJson(const Composer& composer, const printing::EncodedElement& element,
                        const printing::ElementFate* fate) {
    const auto& elements = composer.tickets().at(element.ticket).elements();
    const Origin origin = composer.originOf(element.ticket, element.element);
    JsonObject json;
    json.text("kind", kElementKinds.at(elements.at(element.element).index()))
        .number("offset", element.offset)
        .number("count", element.count);
    if (origin.line > 0) json.number("line", origin.line);
    if (element.size) json.json("size", sizeJson(*element.size));
    if (element.rectangle)
        json.json("place", placeJson(element.rectangle->left, element.rectangle->top));
    if (fate != nullptr) json.text("fate", nameOf(*fate));
    return json.str();
}

std::string ticketJson(const printing::TicketSettings& settings,
                       const std::vector<std::string>& elements) {
    return JsonObject()
        .json("stock", stockJson(settings.stock))
        .number("resolution", settings.resolution)
        .text("orientation", nameOf(settings.orientation))
        .text("path", settings.path)
        .json("elements", jsonArray(elements))
        .str();
}

}  // namespace

std::string sizeJson(const printing::Size& size) {
    return JsonObject().number("width", size.width).number("height", size.height).str();
}

std::string placeJson(std::int64_t left, std::int64_t top) {
    return JsonObject().number("left", left).number("top", top).str();
}

std::string stockJson(const printing::Stock& stock) {
    if (!stock.isCustom()) return std::to_string(stock.index());
    std::ostringstream width;
    std::ostringstream height;
    width << stock.inches().width;
    height << stock.inches().height;
    return JsonObject().json("width", width.str()).json("height", height.str()).str();
}

const char* nameOf(printing::Orientation orientation) {
    return orientation == printing::Orientation::kPortrait ? "portrait" : "landscape";
}

std::string ticketsJson(const Composer& composer,
                        const std::vector<printing::EncodedElement>& elements,
                        const std::vector<printing::ElementFate>& fates) {
    std::vector<std::vector<std::string>> ofTickets(composer.tickets().size());
    for (std::size_t index = 0; index < elements.size(); ++index) {
        const printing::EncodedElement& element = elements[index];
        ofTickets.at(element.ticket)
            .push_back(
                elementJson(composer, element, index < fates.size() ? &fates[index] : nullptr));
    }
    std::vector<std::string> tickets;
    for (std::size_t index = 0; index < ofTickets.size(); ++index) {
        tickets.push_back(ticketJson(composer.tickets()[index].settings(), ofTickets[index]));
    }
    return jsonArray(tickets);
}

}  // namespace tavio::tool
