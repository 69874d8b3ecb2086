#include "TavioIpadSDK/settings/dot_width_table.h"

#include <iterator>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/settings.h"
#include "TavioIpadSDK/settings/stock_table.h"
#include "support/fresh_state.h"

namespace tavio {
namespace {

constexpr std::int32_t kExpected[][3] = {
    {384, 576, 1184},  {640, 960, 1920}, {416, 608, 1232}, {640, 960, 1920},   {640, 960, 1920},
    {816, 1216, 2360}, {190, 290, 590},  {250, 380, 780},  {1700, 2580, 5000},
};
static_assert(std::size(kExpected) == settings::kStocks.size());
constexpr std::int32_t kResolutions[] = {200, 300, 600};

class DotWidths : public test::FreshState {
  protected:
    static void choose(std::int32_t resolution, std::int32_t stock,
                       const std::string& orientation = "<PM>") {
        ChangeConfiguration("<P1>", resolution, false, true, stock, orientation);
    }
};

TEST_F(DotWidths, AreAll27FixedNumbers) {
    InitDotArray();
    for (std::size_t row = 0; row < std::size(kExpected); ++row)
        for (std::size_t column = 0; column < 3; ++column)
            EXPECT_EQ(portrait_dot_array[row][column], kExpected[row][column])
                << row << ", " << column;
}

TEST_F(DotWidths, AreSelectedByStockAndResolutionInPortrait) {
    OpenSessionBT();
    for (std::int32_t stock = 0; stock < settings::kStockCount; ++stock)
        for (std::size_t column = 0; column < 3; ++column) {
            choose(kResolutions[column], stock);
            EXPECT_EQ(portrait_dots, kExpected[stock][column])
                << stock << ", " << kResolutions[column];
        }
}

TEST_F(DotWidths, OfTheExamples) {
    OpenSessionBT();
    choose(300, 5);
    EXPECT_EQ(portrait_dots, 1216);
    choose(600, 8);
    EXPECT_EQ(portrait_dots, 5000);
    choose(200, 6);
    EXPECT_EQ(portrait_dots, 190);
}

TEST_F(DotWidths, AreZeroInLandscapeForEveryStockAndResolution) {
    OpenSessionWiFi("192.0.2.7");
    for (std::int32_t stock = 0; stock < settings::kStockCount; ++stock)
        for (const std::int32_t resolution : {200, 300, 600, 400}) {
            choose(300, 0, "<PM>");
            ASSERT_EQ(portrait_dots, 576);
            choose(resolution, stock, "<LM>");
            EXPECT_EQ(portrait_dots, 0) << stock << ", " << resolution;
        }
}

TEST_F(DotWidths, AreZeroInAnUnknownOrientationThoughTheStockLiesAsInPortrait) {
    OpenSessionBT();
    for (const char* orientation : {"<pm>", "", "<PM> ", "PM", "<LM><PM>"}) {
        SCOPED_TRACE(orientation);
        choose(300, 0, "<PM>");
        ASSERT_EQ(portrait_dots, 576);
        choose(300, 0, orientation);
        EXPECT_EQ(portrait_dots, 0);
        EXPECT_EQ(StockWidth, 2.0);
    }
}

TEST_F(DotWidths, KeepTheirValueForAResolutionThatTheTableDoesNotKnow) {
    using Limits = std::numeric_limits<std::int32_t>;
    OpenSessionBT();
    for (const std::int32_t resolution : {400, 0, -300, 301, Limits::max(), Limits::min()}) {
        choose(300, 5);
        choose(resolution, 8);
        EXPECT_EQ(portrait_dots, 1216) << resolution;
    }
}

TEST_F(DotWidths, KeepTheZeroOfLandscapeForAResolutionThatTheTableDoesNotKnow) {
    OpenSessionBT();
    choose(300, 5, "<LM>");
    choose(400, 5, "<PM>");
    EXPECT_EQ(portrait_dots, 0);
}

TEST_F(DotWidths, AreThoseOfStockZeroForAStockOutOfRange) {
    OpenSessionBT();
    for (const std::int32_t stock : {settings::kStockCount, -1, 1000}) {
        choose(300, 5);
        choose(300, stock);
        EXPECT_EQ(portrait_dots, 576) << stock;
    }
}

TEST_F(DotWidths, AreZeroBeforeTheFirstSessionAndRightWithTheFirstOpening) {
    for (std::int32_t stock = 0; stock < settings::kStockCount; ++stock)
        for (const std::int32_t resolution : kResolutions) {
            choose(resolution, stock);
            EXPECT_EQ(portrait_dots, 0) << stock << ", " << resolution;
        }
    choose(300, 7);
    test::transport().openSucceeds = false;
    OpenSessionWiFi("192.0.2.7");
    EXPECT_EQ(portrait_dots, 380);
}

TEST_F(DotWidths, AreFilledEvenWhenTheOpeningFails) {
    test::transport().openSucceeds = false;
    OpenSessionBT();
    EXPECT_EQ(portrait_dot_array[0][0], 384);
    EXPECT_EQ(portrait_dot_array[8][2], 5000);
}

TEST_F(DotWidths, AreWrittenAnewByEveryOpening) {
    OpenSessionBT();
    portrait_dot_array[3][1] = 7;
    OpenSessionWiFi("192.0.2.7");
    EXPECT_EQ(portrait_dot_array[3][1], 960);
}

TEST_F(DotWidths, FollowASettingTheApplicationWroteItselfOnlyWhenAsked) {
    OpenSessionBT();
    choose(300, 0);
    PrinterResolution = 600;
    EXPECT_EQ(portrait_dots, 576);
    set_portrait_dots();
    EXPECT_EQ(portrait_dots, 1184);
}

TEST_F(DotWidths, KeepTheirValueForASizeIndicatorSetOutsideTheTable) {
    using Limits = std::numeric_limits<std::int32_t>;
    InitDotArray();
    for (const std::int32_t stock : {settings::kStockCount, -1, 10, Limits::max(), Limits::min()}) {
        SCOPED_TRACE(stock);
        choose(300, 5);
        size_indicator = stock;
        set_portrait_dots();
        EXPECT_EQ(portrait_dots, 1216);
        InitDotArray();
        EXPECT_EQ(portrait_dots, 1216);
        EXPECT_EQ(size_indicator, stock);
    }
}

TEST_F(DotWidths, BecomeZeroInLandscapeWhateverTheSizeIndicator) {
    InitDotArray();
    choose(300, 5);
    size_indicator = -1;
    PrinterOrientation = "<LM>";
    set_portrait_dots();
    EXPECT_EQ(portrait_dots, 0);
}

}  // namespace
}  // namespace tavio
