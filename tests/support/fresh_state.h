// A test fixture that resets every module's state to that of the program's start.
#pragma once

#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/platform/notice.h"
#include "support/recording_transport.h"

namespace tavio::test {

void resetAllState();

class FreshState : public testing::Test {
  protected:
    FreshState();
    ~FreshState() override;

    // The messages of the notices shown since the test began.
    std::vector<std::string> noticeMessages() const;

    std::vector<platform::Notice> notices;  // shown since the test began
};

}  // namespace tavio::test
