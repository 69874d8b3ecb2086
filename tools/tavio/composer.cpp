#include "tools/tavio/composer.h"

#include <memory>
#include <utility>

#include "tavio/printing/document_info.h"
#include "tools/tavio/document.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"
#include "tools/tavio/text_face.h"

namespace tavio::tool {

namespace {

constexpr std::size_t kMaxTickets = 10'000;

printing::Place placeOf(const Options& options) {
    return {options.row, options.column};
}

// A picture or a text has one page only.
void refusePages(const std::string& name, const PageList& pages) {
    if (pages.all || !pages.isGiven() || pages.numbers(1) == std::vector<std::int32_t>{1}) return;
    throw Failure(name + " is no PDF, so it has no other page than the first", "no-such-page");
}

std::int32_t pageCountOf(const printing::Source& source) {
    const auto info = printing::inspect(source);
    if (!info)
        throw Failure(info.error().front().sentence, printing::nameOf(info.error().front().kind));
    return info->pages;
}

// A document of several pages is read once. One that cannot be read is refused by encode().
printing::Source readNow(const printing::Source& source) {
    if (source.content()) return source;
    try {
        return printing::Source::bytes(InputFile(source.name()).rest(), source.name());
    } catch (const Failure&) {
        return source;
    }
}

}  // namespace

// One ticket's share of a document.
struct Composer::Part {
    DocumentKind kind;
    printing::Source source;
    std::int32_t page = 1;
};

void Composer::add(const Options& options, std::size_t line) {
    Origin origin;
    origin.line = line;
    origin.pagesChosen = options.pages.isGiven();
    if (options.command == Command::kPrint) {
        addDocuments(options, origin);
    } else {
        addElement(options, line);
        finish(options.settings, options.finish);
    }
    note(origin);
}

void Composer::addElement(const Options& options, std::size_t line) {
    switch (options.command) {
        case Command::kLogoStore:
            return addLogo(options);
        case Command::kLogoPrint:
            ticketFor(options.settings).logo(options.logo, placeOf(options));
            return;
        case Command::kSend:
            ticketFor(options.settings).printerText(options.text);
            return;
        case Command::kText:
            return addText(options, line);
        case Command::kRaw:
            return addRaw(options);
        case Command::kCut:
            return finish(options.settings, printing::Finish::kCut);
        case Command::kEject:
            return finish(options.settings, printing::Finish::kEject);
        case Command::kClear:
            ticketFor(options.settings)
                .printerText(
                    "\x1B"
                    "c");
            return;
        default:
            return addDrawn(options);
    }
}

void Composer::addDrawn(const Options& options) {
    const printing::Place place = placeOf(options);
    switch (options.command) {
        case Command::kCode:
            ticketFor(options.settings)
                .code(options.codeKind, textOf(options), place, codeOptions(options));
            return;
        case Command::kWords:
            return addWords(options);
        case Command::kLine:
            ticketFor(options.settings).line(place, options.length, options.line);
            return;
        case Command::kBox:
            ticketFor(options.settings).box(place, options.size, options.box);
            return;
        default:
            throw Failure("this command is no part of a job");
    }
}

void Composer::addText(const Options& options, std::size_t line) {
    std::optional<std::string> why;
    if (!options.isPrinterFace && !options.points) why = whyNotInPrinterFace(options.text);
    if (!why && !options.points) {
        ticketFor(options.settings).text(options.text, placeOf(options));
        return;
    }
    Options words = options;
    words.points = options.points.value_or(kPrinterFacePoints);
    addWords(words);
    if (why) {
        notes_.push_back(
            {.kind = "other-face",
             .sentence = *why + ": the text is set as words (--printer-face refuses it)",
             .line = line});
    }
}

void Composer::addWords(const Options& options) {
    printing::WordsOptions words = wordsOptions(options);
    if (options.settings.font) words.font = sourceOf(*options.settings.font, "font");
    ticketFor(options.settings).words(textOf(options), placeOf(options), std::move(words));
}

std::string Composer::textOf(const Options& options) {
    if (options.from.empty()) return options.text;
    const auto bytes = contentOf(options.from, "text");
    std::string text(bytes->begin(), bytes->end());
    if (text.ends_with('\n')) text.pop_back();
    if (text.ends_with('\r')) text.pop_back();
    return text;
}

void Composer::add(printing::Ticket ticket, printing::Finish finish) {
    tickets_.push_back(std::move(ticket.finish(finish)));
    origins_.emplace_back();
    isFinished_ = true;
    note({});
}

// Between tickets of one command there is a cut, if nothing else is wanted.
void Composer::addDocuments(const Options& options, Origin origin) {
    std::vector<Part> parts;
    for (const std::string& path : options.files) {
        for (Part& part : partsOf(path, options)) parts.push_back(std::move(part));
    }
    const std::size_t count = parts.size() * static_cast<std::size_t>(options.copies);
    if (count > kMaxTickets) throw Failure("these are more than 10000 tickets, the limit");
    for (std::size_t index = 0; index < count; ++index) {
        const Part& part = parts[index % parts.size()];
        if (index > 0) isFinished_ = true;
        addPart(part, options);
        const bool isLast = index + 1 == count;
        const bool mustPart = options.finish == printing::Finish::kNothing && !isLast;
        finish(options.settings, mustPart ? printing::Finish::kCut : options.finish);
        if (parts.size() > 1) origin.document = nameOf(part);
        origin.isCopy = index >= parts.size();
        note(origin);
    }
}

void Composer::addPart(const Part& part, const Options& options) {
    auto& ticket = ticketFor(options.settings);
    const auto drawing = drawOptions(options.settings, part.page);
    switch (part.kind) {
        case DocumentKind::kText:
            ticket.printerText(part.source);
            break;
        case DocumentKind::kPdf:
            ticket.page(part.source, placeOf(options), drawing);
            break;
        case DocumentKind::kPicture:
            ticket.picture(part.source, placeOf(options), drawing);
            break;
    }
}

std::string Composer::nameOf(const Part& part) {
    if (part.page == 1) return part.source.name();
    return part.source.name() + ", page " + std::to_string(part.page);
}

std::vector<Composer::Part> Composer::partsOf(const std::string& path, const Options& options) {
    Part part{DocumentKind::kText, sourceOf(path, "document"), 1};
    part.kind = isStream(path) ? kindOfContent(part.source.name(), *part.source.content(),
                                               options.type, Use::kPrint)
                               : kindOfFile(path, options.type, Use::kPrint);
    if (part.kind != DocumentKind::kPdf) {
        refusePages(part.source.name(), options.pages);
        return {part};
    }
    std::vector<Part> parts;
    const std::int32_t pageCount = options.pages.all ? pageCountOf(part.source) : 1;
    const std::vector<std::int32_t> pages = options.pages.numbers(pageCount);
    if (pages.size() > 1) part.source = readNow(part.source);
    parts.reserve(pages.size());
    for (std::int32_t page : pages) {
        parts.push_back({part.kind, part.source, page});
    }
    return parts;
}

void Composer::addLogo(const Options& options) {
    const std::string& path = options.files.front();
    printing::Source source = sourceOf(path, "document");
    const DocumentKind kind =
        isStream(path) ? kindOfContent(source.name(), *source.content(), options.type, Use::kLogo)
                       : kindOfFile(path, options.type, Use::kLogo);
    if (kind == DocumentKind::kPicture) refusePages(source.name(), options.pages);
    const std::int32_t page = options.pages.numbers(1).front();
    ticketFor(options.settings)
        .storeLogo(options.logo, std::move(source), drawOptions(options.settings, page));
}

void Composer::addRaw(const Options& options) {
    ticketFor(options.settings).bytes(contentOf(options.files.front(), "job"));
}

std::shared_ptr<const Bytes> Composer::contentOf(const std::string& path, const char* what) {
    const printing::Source source = sourceOf(path, what);
    if (auto content = source.content()) return content;
    return std::make_shared<const Bytes>(InputFile(source.name()).rest());
}

// what: its name if it is also the place to print to.
printing::Source Composer::sourceOf(const std::string& path, const char* what) {
    if (isStream(path)) return streamOf(path);
    if (!replaced_.empty() && areSameFile(path, replaced_)) {
        throw Failure(path + " is the " + what + " itself, so choose another place with --to");
    }
    return printing::Source::file(path);
}

printing::Source Composer::streamOf(const std::string& path) {
    if (isStandardInput(path)) {
        if (!whyNoStandardInput_.empty()) throw Failure(whyNoStandardInput_);
        whyNoStandardInput_ = "standard input can be read only once";
    }
    InputFile file(path);
    return printing::Source::bytes(file.rest(), file.name());
}

printing::Ticket& Composer::ticketFor(const Settings& settings) {
    const printing::TicketSettings wanted = ticketSettings(settings);
    if (isFinished_ || tickets_.back().settings() != wanted) {
        tickets_.emplace_back(wanted);
        origins_.emplace_back();
        isFinished_ = false;
    }
    return tickets_.back();
}

void Composer::finish(const Settings& settings, printing::Finish finish) {
    if (finish == printing::Finish::kNothing) return;
    ticketFor(settings).finish(finish);
    isFinished_ = true;
}

void Composer::note(const Origin& origin) {
    for (std::size_t ticket = tickets_.size(); ticket-- > 0;) {
        const std::size_t count = tickets_[ticket].elements().size();
        if (origins_[ticket].size() == count && ticket + 1 < tickets_.size()) return;
        origins_[ticket].resize(count, origin);
    }
}

Origin Composer::originOf(std::size_t ticket, std::size_t element) const {
    if (ticket >= origins_.size() || origins_[ticket].empty()) return {};
    const auto& origins = origins_[ticket];
    return element < origins.size() ? origins[element] : origins.front();
}

}  // namespace tavio::tool
