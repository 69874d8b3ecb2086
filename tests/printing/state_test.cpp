// Composing, encoding and inspecting touch no module-wide variable, whatever is asked of them.

#include "TavioIpadSDK/encoder/state.h"

#include <tuple>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/imaging/state.h"
#include "intake/picture_files.h"
#include "printing/random_tickets.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/temporary_folder.h"
#include "tavio/printing/document_info.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::Random;

// Every variable that a header of TavioIpadSDK declares (scripts/check-state counts them).
auto everyVariable() {
    namespace e = encoder;
    namespace i = imaging;
    return std::tie(e::bmfile, e::bminfo, e::linemap, i::mWidth, i::mHeight, i::mDataWidth,
                    i::mDataArrayLength, i::mDataArray, i::mRawBitmapData, i::k, i::nRead,
                    i::BMPHeader, i::myImageData, i::openSurface, i::Pixels, i::Planes,
                    i::CompBuffer, i::BitBuffer, LogoNumber, originalx, originaly, FileName,
                    portrait_dot_array, portrait_dots, PrinterPath, PrinterOrientation,
                    PrinterResolution, StockWidth, StockHeight, ImageScaled, ImageDithered,
                    size_indicator, Mode, connectionStatus, connectedBTdevices, selectedBTindex, s);
}

// Where the elements of a vector lie: a variable that was written with its own value has moved.
auto addresses() {
    return std::tuple(encoder::linemap.data(), imaging::mDataArray.data(),
                      imaging::mRawBitmapData.data(), imaging::openSurface.data(),
                      LogoNumber.data(), PrinterPath.data());
}

template <typename... Types>
std::tuple<Types...> copyOf(const std::tuple<Types&...>& variables) {
    return variables;
}

template <typename Vector>
void fillVector(Random& random, Vector& vector) {
    vector.resize(static_cast<std::size_t>(test::between(random, 1, 100)));
    for (auto& element : vector) element = static_cast<typename Vector::value_type>(random());
}

std::string randomText(Random& random) {
    return "random text " + std::to_string(random());
}

void fillNumbers(Random& random) {
    for (std::int32_t* number :
         {&imaging::mWidth, &imaging::mHeight, &imaging::mDataWidth, &imaging::mDataArrayLength,
          &imaging::nRead, &originalx, &originaly, &portrait_dots, &PrinterResolution,
          &size_indicator, &connectedBTdevices, &selectedBTindex})
        *number = static_cast<std::int32_t>(random());
    imaging::k = static_cast<UInt32>(random());
    StockWidth = test::between(random, 1, 100) / 7.0;
    StockHeight = test::between(random, 1, 100) / 7.0;
    ImageScaled = test::chance(random, 50);
    ImageDithered = test::chance(random, 50);
    connectionStatus = test::chance(random, 50);
    for (auto& row : portrait_dot_array)
        for (std::int32_t& dots : row) dots = static_cast<std::int32_t>(random());
}

// A write of a default would show.
void fillVariables(Random& random) {
    fillNumbers(random);
    encoder::bmfile.bfSize = static_cast<UInt32>(random());
    encoder::bminfo.biWidth = static_cast<UInt32>(random());
    encoder::linemap.assign(3, {7, static_cast<std::int32_t>(random()), 1});
    fillVector(random, imaging::mDataArray);
    fillVector(random, imaging::mRawBitmapData);
    fillVector(random, imaging::openSurface);
    imaging::BMPHeader.fill(static_cast<Byte>(random()));
    imaging::myImageData = std::make_shared<const Bytes>(9, Byte{1});
    FileName = randomText(random);
    for (std::string* text : {&LogoNumber, &PrinterPath, &PrinterOrientation, &Mode, &s})
        *text = randomText(random);
}

class Untouched : public test::FreshState {
  protected:
    Untouched() {
        test::writeFile(folder_ / "text.txt", "Row F");
        test::writeFile(folder_ / "none.bin", "\xFF\xFE");
        Bytes damaged = test::greyPng(test::allBlack(40, 40), 1);
        damaged[damaged.size() - 30] ^= 1U;
        sources_ = {Source::file(folder_ / "text.txt"),
                    Source::file(folder_ / "none.bin"),
                    Source::file(folder_ / "missing"),
                    Source::file(folder_.path()),
                    Source::bytes(Bytes()),
                    Source::bytes(damaged),
                    Source::bytes(test::greyPng(test::allBlack(20, 30), 6)),
                    Source::bytes(test::blackBmp(33, 17)),
                    Source::bytes(test::bytesOf("%PDF-1.7"))};
    }

    const Source& anySource(Random& random) const { return sources_[random() % sources_.size()]; }

    static TicketSettings anySettings(Random& random) {
        TicketSettings settings = test::randomTicket(random).settings;
        if (test::chance(random, 10)) settings.resolution = 0;
        if (test::chance(random, 10)) settings.stock = Stock::ofInches(-1, 0);
        return settings;
    }

    static DrawOptions anyDrawing(Random& random) {
        DrawOptions options;
        options.page = test::between(random, -1, 3);
        if (test::chance(random, 50)) options.blackAndWhite = BlackAndWhite::kThreshold;
        if (test::chance(random, 50)) {
            options.classic = Classic{};
        } else {
            options.fit = static_cast<Fit>(test::between(random, 0, 4));
            options.turn = static_cast<Turn>(test::between(random, 0, 4));
            options.align = static_cast<Align>(test::between(random, 0, 8));
            options.margin = test::between(random, -5, 50);
        }
        return options;
    }

    void addSomething(Random& random, Ticket& ticket) const {
        const Place place{test::between(random, -50, 500), test::between(random, -50, 500)};
        const auto pixels =
            test::chance(random, 80)
                ? std::make_shared<const platform::Picture>(test::randomPicture(random, 40))
                : nullptr;
        switch (test::between(random, 0, 9)) {
            case 0:
                ticket.page(anySource(random), place, anyDrawing(random));
                break;
            case 1:
                ticket.picture(anySource(random), place, anyDrawing(random));
                break;
            case 2:
                ticket.picture(pixels, place, anyDrawing(random));
                break;
            case 3:
                ticket.document(anySource(random), place, anyDrawing(random));
                break;
            case 4:
                ticket.text(test::chance(random, 50) ? "Row F" : "Jos\u00E9 <p>", place);
                break;
            case 5:
                ticket.printerText(anySource(random));
                break;
            case 6:
                ticket.bytes(test::chance(random, 50) ? std::make_shared<const Bytes>(3) : nullptr);
                break;
            case 7:
                ticket.logo(place.row, place);
                break;
            case 8:
                ticket.storeLogo(place.row, anySource(random), anyDrawing(random));
                break;
            default:
                ticket.storeLogo(place.row, pixels, anyDrawing(random)).finish(Finish::kCut);
        }
    }

    static EncodeOptions anyOptions(Random& random) {
        EncodeOptions options;
        options.mayUseThreads = test::chance(random, 50);
        if (test::chance(random, 10)) options.maxFileBytes = 3;
        const bool throws = test::chance(random, 20);
        options.pageEngine = [throws](const Source&, std::int32_t page) {
            if (throws) throw std::runtime_error("no page");
            const platform::PdfPage drawn{0, 0, 30, 20, 0, 0, test::plainPicture(30, 20, 0, 9, 0)};
            return page > 2 ? DrawnPage{{platform::PdfOutcome::kNoPage, {}}, 2}
                            : DrawnPage{{platform::PdfOutcome::kDrawn, drawn}, 2};
        };
        return options;
    }

    // One call of the surface, or a few.
    void doSomething(Random& random, std::vector<Ticket>& tickets) {
        const std::size_t any = random() % tickets.size();
        switch (test::between(random, 0, 9)) {
            case 0:
                tickets.emplace_back(anySettings(random));
                break;
            case 1:
                tickets.push_back(Ticket(tickets[any]));
                break;
            case 2:
                jobs_ += encode(tickets, anyOptions(random)).has_value();
                break;
            case 3:
                jobs_ += encode(tickets[any], anyOptions(random)).has_value();
                break;
            case 4:
                jobs_ += inspect(anySource(random), anySettings(random), {}, anyDrawing(random),
                                 anyOptions(random))
                             .has_value();
                break;
            case 5:
                jobs_ += ticketSize(anySettings(random)).has_value();
                break;
            default:
                addSomething(random, tickets[any]);
        }
    }

    test::TemporaryFolder folder_;
    std::vector<Source> sources_;
    int jobs_ = 0;
};

// Counts its lookups.
class CountingLibrary : public platform::PhotoLibrary {
  public:
    void assetForURL(const URL& /*url*/, platform::AssetResultHandler onResult,
                     platform::AssetFailureHandler /*onFailure*/) override {
        ++lookups;
        onResult(nullptr);
    }
    int lookups = 0;
};

TEST_F(Untouched, IsEveryModuleWideVariableAfterAnySequenceOfCalls) {
    static_assert(std::tuple_size_v<decltype(everyVariable())> == 37);
    const auto initially = copyOf(everyVariable());
    for (unsigned seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        fillVariables(random);
        const auto before = copyOf(everyVariable());
        const auto addressesBefore = addresses();
        std::vector<Ticket> tickets(1);
        for (int left = test::between(random, 1, 30); left > 0; --left)
            ASSERT_NO_THROW(doSomething(random, tickets));
        ASSERT_TRUE(everyVariable() == before);
        ASSERT_TRUE(addresses() == addressesBefore);
    }
    EXPECT_GT(jobs_, 50);
    EXPECT_TRUE(notices.empty());
    EXPECT_TRUE(test::transport().calls.empty());
    everyVariable() = initially;
}

TEST_F(Untouched, AreTheRegisteredPhotoLibraryPageSourceAndNoticeHandler) {
    const auto library = std::make_shared<CountingLibrary>();
    int asked = 0;
    platform::setPhotoLibrary(library);
    platform::setPdfPageSource([&asked](const URL&) {
        ++asked;
        return platform::PdfPageResult{platform::PdfOutcome::kNoPage, {}};
    });
    for (unsigned seed = 0; seed < 50; ++seed) {
        Random random(seed);
        std::vector<Ticket> tickets(1);
        for (int left = 20; left > 0; --left) doSomething(random, tickets);
    }
    EXPECT_EQ(platform::photoLibrary(), library);
    EXPECT_EQ(library->lookups, 0);
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(notices.empty());

    platform::drawPdfPage(URL::fromPath("/page.pdf"));
    EXPECT_EQ(asked, 1) << "it is still registered";
    platform::showNotice({"Alert", "text", "OK"});
    EXPECT_EQ(noticeMessages(), std::vector<std::string>{"text"});
}

}  // namespace
}  // namespace tavio::printing
