#include "tavio/printing/ticket.h"

#include <exception>
#include <utility>

namespace tavio::printing {

Ticket& Ticket::add(Element element) {
    try {
        elements_.push_back(std::move(element));
    } catch (const std::exception&) {
        isIncomplete_ = true;
    }
    return *this;
}

Ticket& Ticket::page(Source document, Place place, DrawOptions options) {
    return add(
        element::Document{element::DocumentKind::kPage, std::move(document), place, options});
}

Ticket& Ticket::picture(Source file, Place place, DrawOptions options) {
    return add(element::Document{element::DocumentKind::kPicture, std::move(file), place, options});
}

Ticket& Ticket::picture(std::shared_ptr<const platform::Picture> pixels, Place place,
                        DrawOptions options) {
    return add(element::Pixels{std::move(pixels), place, options});
}

Ticket& Ticket::document(Source source, Place place, DrawOptions options) {
    return add(element::Document{element::DocumentKind::kAny, std::move(source), place, options});
}

Ticket& Ticket::code(CodeKind kind, std::string data, Place place, CodeOptions options) {
    return add(element::Code{kind, std::move(data), place, options});
}

Ticket& Ticket::words(std::string utf8, Place place, WordsOptions options) {
    return add(element::Words{std::move(utf8), place, std::move(options)});
}

Ticket& Ticket::line(Place place, std::int32_t length, LineOptions options) {
    return add(element::Line{place, length, options});
}

Ticket& Ticket::box(Place place, Size size, BoxOptions options) {
    return add(element::Box{place, size, options});
}

Ticket& Ticket::text(std::string utf8, Place place) {
    return add(element::PlainText{std::move(utf8), place});
}

Ticket& Ticket::printerText(std::string text) {
    return add(element::PrinterText{std::move(text)});
}

Ticket& Ticket::printerText(Source file) {
    return add(element::PrinterTextFile{std::move(file)});
}

Ticket& Ticket::bytes(std::shared_ptr<const Bytes> bytes) {
    return add(element::RawBytes{std::move(bytes)});
}

Ticket& Ticket::logo(std::int32_t number, Place place) {
    return add(element::StoredLogo{number, place});
}

Ticket& Ticket::storeLogo(std::int32_t number, Source source, DrawOptions options) {
    return add(element::StoreLogo{
        number, element::Document{element::DocumentKind::kAny, std::move(source), {}, options}});
}

Ticket& Ticket::storeLogo(std::int32_t number, std::shared_ptr<const platform::Picture> pixels,
                          DrawOptions options) {
    return add(element::StoreLogo{number, element::Pixels{std::move(pixels), {}, options}});
}

Ticket& Ticket::finish(Finish finish) {
    return add(element::End{finish});
}

}  // namespace tavio::printing
