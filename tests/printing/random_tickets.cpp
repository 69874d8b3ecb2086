#include "printing/random_tickets.h"

#include <cmath>
#include <fstream>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/pdf/answer.h"
#include "pictures/sample_pictures.h"
#include "support/recording_transport.h"

namespace tavio::test {
namespace {

using printing::BlackAndWhite;
using printing::DrawOptions;
using printing::Finish;
using printing::Orientation;
using printing::Place;
using printing::Source;
using printing::Stock;
using printing::Ticket;
using Kind = RandomElement::Kind;

// Mostly small papers of any size, because scaled pictures fill them.
Stock randomStock(Random& random) {
    if (chance(random, 10)) return Stock::ofIndex(between(random, 0, 7));
    return Stock::ofInches(between(random, 5, 60) / 100.0, between(random, 5, 60) / 100.0);
}

printing::TicketSettings randomSettings(Random& random) {
    printing::TicketSettings settings;
    settings.stock = randomStock(random);
    settings.resolution = chance(random, 50) ? 200 : chance(random, 90) ? 300 : 600;
    if (!settings.stock.isCustom()) settings.resolution = chance(random, 50) ? 200 : 300;
    if (chance(random, 50)) settings.orientation = Orientation::kPortrait;
    if (chance(random, 20)) settings.path = chance(random, 50) ? "" : "<P\xC3\xA9>";
    return settings;
}

Place randomPlace(Random& random) {
    return {chance(random, 30) ? 0 : between(random, -300, 2000),
            chance(random, 30) ? 0 : between(random, -300, 2000)};
}

DrawOptions randomOptions(Random& random, bool maybeScaled) {
    DrawOptions options;
    options.classic = printing::Classic{.scaled = maybeScaled && chance(random, 20)};
    if (chance(random, 40)) options.blackAndWhite = BlackAndWhite::kThreshold;
    return options;
}

// A PNG file of straight, not premultiplied, pixels, and the picture that it holds.
void makePicture(Random& random, RandomElement& element) {
    pictures::samples::PngPlan plan;
    plan.width = static_cast<std::uint32_t>(between(random, 1, 64));
    plan.height = static_cast<std::uint32_t>(between(random, 1, 64));
    element.picture.width = static_cast<std::int32_t>(plan.width);
    element.picture.height = static_cast<std::int32_t>(plan.height);
    const bool isOpaque = chance(random, 80);
    const int darkest = between(random, 0, 255);
    for (std::uint32_t pixel = 0; pixel < plan.width * plan.height; ++pixel) {
        const bool isBlank = chance(random, 40);
        std::array<unsigned, 4> straight{255, 255, 255, 255};
        for (unsigned& part : straight)
            if (!isBlank) part = static_cast<unsigned>(between(random, darkest, 255));
        if (isOpaque) straight[3] = 255;
        for (const unsigned part : straight) plan.samples.push_back(static_cast<Byte>(part));
        element.picture.pixels.push_back(
            pictures::premultipliedPixel(straight[0], straight[1], straight[2], straight[3]));
    }
    element.file = pictures::samples::pngFile(plan);
}

// A page whose crop box may lie anywhere.
platform::PdfPage randomPage(Random& random) {
    platform::PdfPage page;
    page.x = chance(random, 60) ? 0 : between(random, -300, 300) / 10.0;
    page.y = chance(random, 60) ? 0 : between(random, -300, 300) / 10.0;
    page.width = between(random, 20, 500) / 10.0;
    page.height = between(random, 20, 500) / 10.0;
    const pdf::AnswerHeader header = pdf::drawnHeader(page.x, page.y, page.width, page.height);
    page.left = header.left;
    page.top = header.top;
    page.picture.width = static_cast<std::int32_t>(header.columns);
    page.picture.height = static_cast<std::int32_t>(header.rows);
    const std::size_t pixels = std::size_t{header.columns} * header.rows;
    for (std::size_t pixel = 0; pixel < pixels; ++pixel)
        page.picture.pixels.push_back(0xFF000000U | static_cast<UInt32>(random()));
    return page;
}

Bytes randomText(Random& random) {
    Bytes text;
    for (int left = between(random, 0, 40); left > 0; --left)
        text.push_back(static_cast<Byte>(between(random, 1, 126)));
    return text;
}

Kind randomKind(Random& random) {
    constexpr std::array<Kind, 10> kKinds{
        Kind::kPicture,  Kind::kPicture,      Kind::kPicture,   Kind::kPage,   Kind::kPage,
        Kind::kTextFile, Kind::kStorePicture, Kind::kStorePage, Kind::kFinish, Kind::kPrintLogo};
    return kKinds.at(static_cast<std::size_t>(between(random, 0, 9)));
}

RandomElement randomElement(Random& random, bool maybeScaled) {
    RandomElement element;
    element.kind = randomKind(random);
    element.place = randomPlace(random);
    element.options = randomOptions(random, maybeScaled);
    element.logo = between(random, -3, 99);
    element.finish = chance(random, 50) ? Finish::kCut : Finish::kEject;
    if (element.kind == Kind::kPicture || element.kind == Kind::kStorePicture)
        makePicture(random, element);
    if (element.kind == Kind::kPage || element.kind == Kind::kStorePage)
        element.page = randomPage(random);
    if (element.kind == Kind::kTextFile) element.file = randomText(random);
    return element;
}

// A document of which the engine knows the page.
Source pageSource(std::size_t index) {
    const std::string text = "%PDF-" + std::to_string(index);
    return Source::bytes(Bytes(text.begin(), text.end()), std::to_string(index));
}

void addPicture(Ticket& ticket, const RandomElement& element, bool asPixels) {
    const auto pixels = std::make_shared<const platform::Picture>(element.picture);
    const bool isStored = element.kind == Kind::kStorePicture;
    if (isStored && asPixels)
        ticket.storeLogo(element.logo, pixels, element.options);
    else if (isStored)
        ticket.storeLogo(element.logo, Source::bytes(element.file), element.options);
    else if (asPixels)
        ticket.picture(pixels, element.place, element.options);
    else
        ticket.picture(Source::bytes(element.file), element.place, element.options);
}

// ---- The classic surface ------------------------------------------------------------------------

void configure(const printing::TicketSettings& settings, const DrawOptions& options) {
    const bool isLandscape = settings.orientation == Orientation::kLandscape;
    ChangeConfiguration(settings.path, settings.resolution, options.classic->scaled,
                        options.blackAndWhite == BlackAndWhite::kDithered,
                        settings.stock.isCustom() ? 0 : settings.stock.index(),
                        isLandscape ? "<LM>" : "<PM>");
    if (!settings.stock.isCustom()) return;
    const settings::StockSize inches = settings.stock.inches();
    StockWidth = isLandscape ? inches.width : inches.height;
    StockHeight = isLandscape ? inches.height : inches.width;
    if (!isLandscape)
        portrait_dots =
            static_cast<std::int32_t>(std::lround(StockWidth * settings.resolution)) - 1;
}

URL photo(const RandomElement& element) {
    const auto photos = std::make_shared<platform::InMemoryPhotoLibrary>();
    const URL url = photos->add("photo.png", element.file);
    platform::setPhotoLibrary(photos);
    return url;
}

URL page(const RandomElement& element) {
    platform::setPdfPageSource([&element](const URL&) {
        return platform::PdfPageResult{platform::PdfOutcome::kDrawn, element.page};
    });
    return URL::fromPath("/page.pdf");
}

URL textFile(const RandomElement& element, const std::string& folder) {
    const std::string path = folder + "/text.txt";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(element.file.data()),
               static_cast<std::streamsize>(element.file.size()));
    return URL::fromPath(path);
}

void sendElement(const RandomElement& element, const std::string& folder) {
    const auto [row, column] = element.place;
    switch (element.kind) {
        case Kind::kPicture:
            SendFile(photo(element), row, column);
            break;
        case Kind::kPage:
            SendFile(page(element), row, column);
            break;
        case Kind::kTextFile:
            SendFile(textFile(element, folder), row, column);
            break;
        case Kind::kPrintLogo:
            PrintLogo(element.logo, row, column);
            break;
        case Kind::kStorePicture:
            DownloadLogo(photo(element), element.logo);
            break;
        case Kind::kStorePage:
            DownloadLogo(page(element), element.logo);
            break;
        case Kind::kFinish:
            element.finish == Finish::kCut ? PrintCut() : PrintNoCut();
            break;
    }
}

Bytes bytesSent() {
    Bytes bytes;
    for (const TransportCall& call : transport().calls) {
        if (call.operation == "Write_WF" && call.text)
            bytes.insert(bytes.end(), call.text->begin(), call.text->end());
        bytes.insert(bytes.end(), call.data.begin(), call.data.end());
    }
    return bytes;
}

}  // namespace

RandomTicket randomTicket(Random& random) {
    RandomTicket ticket;
    ticket.settings = randomSettings(random);
    const bool maybeScaled = ticket.settings.stock.isCustom() || chance(random, 10);
    for (int left = between(random, 1, 5); left > 0; --left)
        ticket.elements.push_back(randomElement(random, maybeScaled));
    return ticket;
}

Ticket composed(const RandomTicket& ticket, Random& random) {
    Ticket result(ticket.settings);
    for (std::size_t index = 0; index < ticket.elements.size(); ++index) {
        const RandomElement& element = ticket.elements[index];
        switch (element.kind) {
            case Kind::kPicture:
            case Kind::kStorePicture:
                addPicture(result, element, chance(random, 50));
                break;
            case Kind::kPage:
                result.page(pageSource(index), element.place, element.options);
                break;
            case Kind::kStorePage:
                result.storeLogo(element.logo, pageSource(index), element.options);
                break;
            case Kind::kTextFile:
                result.printerText(Source::bytes(element.file));
                break;
            case Kind::kPrintLogo:
                result.logo(element.logo, element.place);
                break;
            case Kind::kFinish:
                result.finish(element.finish);
                break;
        }
    }
    return result;
}

printing::PageEngine pageEngineOf(const RandomTicket& ticket) {
    return [&ticket](const Source& document, std::int32_t /*page*/) {
        const RandomElement& element = ticket.elements.at(std::stoul(document.name()));
        return printing::DrawnPage{{platform::PdfOutcome::kDrawn, element.page}, 1};
    };
}

Bytes sentClassically(const RandomTicket& ticket, const std::string& folder) {
    OpenSessionWiFi("");
    transport().calls.clear();
    for (const RandomElement& element : ticket.elements) {
        configure(ticket.settings, element.options);
        sendElement(element, folder);
    }
    Bytes bytes = bytesSent();
    CloseSessionWiFi();
    platform::setPdfPageSource({});
    return bytes;
}

}  // namespace tavio::test
