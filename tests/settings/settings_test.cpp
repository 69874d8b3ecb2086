#include "TavioIpadSDK/settings/settings.h"

#include <iterator>
#include <limits>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/stock_table.h"
#include "support/fresh_state.h"

namespace tavio {
namespace {

class Settings : public test::FreshState {
  protected:
    static void choose(std::int32_t stock, const std::string& orientation) {
        ChangeConfiguration("<P1>", 300, false, true, stock, orientation);
    }
};

auto allSettings() {
    return std::tuple(PrinterPath, PrinterOrientation, PrinterResolution, StockWidth, StockHeight,
                      ImageScaled, ImageDithered, size_indicator, portrait_dots);
}

// ---- The stock table ----------------------------------------------------------------------------

struct StockRow {
    std::int32_t index;
    double landscapeWidth;
    double landscapeHeight;
    double otherWidth;
    double otherHeight;
};

constexpr StockRow kTable[] = {
    {0, 5.5, 2.0, 2.0, 5.5},   {1, 2.0, 3.25, 3.25, 2.0},     {2, 3.37, 2.13, 2.13, 3.37},
    {3, 8.0, 3.25, 3.25, 8.0}, {4, 6.0, 3.25, 3.25, 6.0},     {5, 6.0, 4.0, 4.0, 6.0},
    {6, 11.0, 1.0, 1.0, 11.0}, {7, 11.0, 1.328, 1.328, 11.0}, {8, 11.0, 8.5, 8.5, 11.0},
};
static_assert(std::size(kTable) == settings::kStocks.size());

TEST_F(Settings, HaveTheExactSizeOfEveryStockInLandscape) {
    for (const StockRow& row : kTable) {
        SCOPED_TRACE(row.index);
        choose(row.index, "<LM>");
        EXPECT_EQ(StockWidth, row.landscapeWidth);
        EXPECT_EQ(StockHeight, row.landscapeHeight);
        EXPECT_EQ(size_indicator, row.index);
    }
}

TEST_F(Settings, HaveTheExactSizeOfEveryStockInAnyOtherOrientation) {
    for (const char* orientation : {"<PM>", "<lm>", "<Lm>", "", "LM", "<LM> ", "<LM>x"}) {
        for (const StockRow& row : kTable) {
            SCOPED_TRACE(testing::Message() << '"' << orientation << "\" " << row.index);
            choose(row.index, orientation);
            EXPECT_EQ(StockWidth, row.otherWidth);
            EXPECT_EQ(StockHeight, row.otherHeight);
            EXPECT_EQ(PrinterOrientation, orientation);
        }
    }
}

TEST_F(Settings, KeepTheCinemaStockHigherThanWideInLandscape) {
    choose(CINEMA, "<LM>");
    EXPECT_EQ(StockWidth, 2.0);
    EXPECT_EQ(StockHeight, 3.25);
    choose(CINEMA, "<PM>");
    EXPECT_EQ(StockWidth, 3.25);
    EXPECT_EQ(StockHeight, 2.0);
}

TEST_F(Settings, EveryStockButCinemaIsWiderThanHighInLandscape) {
    for (std::int32_t stock = 0; stock < settings::kStockCount; ++stock) {
        choose(stock, "<LM>");
        EXPECT_EQ(StockWidth > StockHeight, stock != CINEMA) << stock;
    }
}

TEST(StockTable, NamesTheFirstFourStocks) {
    const std::string names[] = {"CONCERT", "CINEMA", "CREDITCARD", "RECEIPT"};
    for (std::size_t i = 0; i < settings::kStocks.size(); ++i)
        EXPECT_EQ(settings::kStocks[i].name, i < std::size(names) ? names[i] : "");
}

// ---- ChangeConfiguration ------------------------------------------------------------------------

TEST_F(Settings, StoreEveryArgument) {
    ChangeConfiguration("<P2>", 600, true, false, 3, "<PM>");
    EXPECT_EQ(PrinterPath, "<P2>");
    EXPECT_EQ(PrinterResolution, 600);
    EXPECT_TRUE(ImageScaled);
    EXPECT_FALSE(ImageDithered);
    EXPECT_EQ(size_indicator, 3);
    EXPECT_EQ(PrinterOrientation, "<PM>");
    ChangeConfiguration("<P1>", 200, false, true, 4, "<LM>");
    EXPECT_EQ(PrinterPath, "<P1>");
    EXPECT_EQ(PrinterResolution, 200);
    EXPECT_FALSE(ImageScaled);
    EXPECT_TRUE(ImageDithered);
    EXPECT_EQ(size_indicator, 4);
    EXPECT_EQ(PrinterOrientation, "<LM>");
}

TEST_F(Settings, KeepScalingAndDitheringApart) {
    ChangeConfiguration("<P1>", 300, true, true, 0, "<LM>");
    EXPECT_TRUE(ImageScaled);
    EXPECT_TRUE(ImageDithered);
    ChangeConfiguration("<P1>", 300, false, false, 0, "<LM>");
    EXPECT_FALSE(ImageScaled);
    EXPECT_FALSE(ImageDithered);
}

TEST_F(Settings, StorePathsOrientationsAndResolutionsThatNoPrinterKnows) {
    using Limits = std::numeric_limits<std::int32_t>;
    for (const std::int32_t resolution : {0, -300, 299, Limits::max(), Limits::min()}) {
        ChangeConfiguration("\xC3\xA9 any", resolution, false, true, 0, "sideways");
        EXPECT_EQ(PrinterPath, "\xC3\xA9 any");
        EXPECT_EQ(PrinterOrientation, "sideways");
        EXPECT_EQ(PrinterResolution, resolution);
    }
}

TEST_F(Settings, TurnAStockOutOfRangeIntoIndexZeroButKeepTheSizeInUse) {
    using Limits = std::numeric_limits<std::int32_t>;
    for (const std::int32_t stock :
         {settings::kStockCount, -1, 10, 255, 256, Limits::max(), Limits::min()}) {
        SCOPED_TRACE(stock);
        choose(8, "<LM>");
        ChangeConfiguration("<P2>", 200, true, false, stock, "<PM>");
        EXPECT_EQ(size_indicator, 0);
        EXPECT_EQ(StockWidth, 11.0);
        EXPECT_EQ(StockHeight, 8.5);
        EXPECT_EQ(PrinterPath, "<P2>");
        EXPECT_EQ(PrinterResolution, 200);
        EXPECT_TRUE(ImageScaled);
        EXPECT_FALSE(ImageDithered);
        EXPECT_EQ(PrinterOrientation, "<PM>");
    }
}

TEST_F(Settings, LayTheStockOutByTheNewOrientationAndNotByTheOneBefore) {
    choose(0, "<PM>");
    choose(0, "<LM>");
    EXPECT_EQ(StockWidth, 5.5);
    choose(0, "<PM>");
    EXPECT_EQ(StockWidth, 2.0);
}

TEST_F(Settings, AreTheSameAfterTheSameCallAgain) {
    InitDotArray();
    for (const std::int32_t stock : {0, 5, settings::kStockCount}) {
        ChangeConfiguration("<P2>", 600, true, false, stock, "<PM>");
        const auto once = allSettings();
        ChangeConfiguration("<P2>", 600, true, false, stock, "<PM>");
        EXPECT_EQ(allSettings(), once);
    }
}

TEST_F(Settings, AcceptTheirOwnVariablesAsArguments) {
    InitDotArray();
    ChangeConfiguration("<P2>", 600, true, false, 7, "<PM>");
    const auto before = allSettings();
    ChangeConfiguration(PrinterPath, PrinterResolution, ImageScaled, ImageDithered, size_indicator,
                        PrinterOrientation);
    EXPECT_EQ(allSettings(), before);
}

TEST_F(Settings, MayBeGivenToEachOther) {
    for (const char* mark : {"", " and characters enough for memory of their own"}) {
        const std::string first = std::string("<P2>") + mark;
        const std::string second = std::string("<PM>") + mark;
        ChangeConfiguration(first, 300, false, true, 0, second);
        ChangeConfiguration(PrinterOrientation, 300, false, true, 0, PrinterPath);
        EXPECT_EQ(PrinterPath, second);
        EXPECT_EQ(PrinterOrientation, first);
        ChangeConfiguration(PrinterPath, 300, false, true, 0, PrinterPath);
        EXPECT_EQ(PrinterPath, second);
        EXPECT_EQ(PrinterOrientation, second);
    }
}

TEST_F(Settings, ChangeWithOrWithoutASessionAndSendNothing) {
    choose(3, "<PM>");
    EXPECT_TRUE(test::transport().calls.empty());
}

}  // namespace
}  // namespace tavio
