#include "TavioIpadSDK/platform/notice.h"

#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "support/fresh_state.h"

namespace tavio::platform {
namespace {

const Notice kNotice{"Alert", "Error - BMP file must be monochrome.", "OK"};

class Notices : public test::FreshState {};

TEST_F(Notices, GoToTheHandlerAsTheyAre) {
    std::vector<Notice> shown;
    setNoticeHandler([&shown](const Notice& notice) { shown.push_back(notice); });
    testing::internal::CaptureStderr();
    showNotice(kNotice);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].title, "Alert");
    EXPECT_EQ(shown[0].message, "Error - BMP file must be monochrome.");
    EXPECT_EQ(shown[0].button, "OK");
}

TEST_F(Notices, GoToStandardErrorAsOneLineWithoutAHandler) {
    setNoticeHandler({});
    testing::internal::CaptureStderr();
    showNotice(kNotice);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Alert: Error - BMP file must be monochrome.\n");
}

TEST_F(Notices, KeepPercentSignsOnStandardError) {
    setNoticeHandler({});
    testing::internal::CaptureStderr();
    showNotice({"100 %s", "%d %n", "OK"});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "100 %s: %d %n\n");
}

TEST_F(Notices, DropWhatAHandlerThrows) {
    int calls = 0;
    setNoticeHandler([&calls](const Notice&) {
        ++calls;
        throw std::runtime_error("no screen");
    });
    showNotice(kNotice);
    setNoticeHandler([&calls](const Notice&) {
        ++calls;
        throw 7;
    });
    showNotice(kNotice);
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace tavio::platform
