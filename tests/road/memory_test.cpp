// Buffers that a print does not give back are used again by the next one.

#include <array>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/state.h"
#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/imaging/state.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"

namespace tavio {
namespace {

// The memory that the modules keep between prints.
std::array<std::size_t, 4> heldMemory() {
    return {imaging::openSurface.capacity(), imaging::mDataArray.capacity(),
            imaging::mRawBitmapData.capacity(), encoder::linemap.capacity()};
}

class Memory : public test::FreshState {};

TEST_F(Memory, StopsGrowingAfterTheSecondPrintOfTheLargestSize) {
    const pictures::Picture largest = test::plainPicture(120, 90, 10, 200, 30);
    const pictures::Picture smaller = test::plainPicture(60, 40, 10, 200, 30);
    imaging::PrintBMP(240, 180, largest);
    imaging::PrintBMP(240, 180, largest);
    const auto afterSecond = heldMemory();
    for (int print = 3; print <= 1000; ++print) {
        ImageDithered = print % 3 != 0;
        LogoNumber = std::string(print % 5 == 0 ? 1 : 0, '7');
        print % 2 == 0 ? imaging::PrintBMP(240, 180, largest) : imaging::PrintBMP(100, 50, smaller);
        test::transport().calls.clear();
    }
    EXPECT_EQ(heldMemory(), afterSecond);
}

}  // namespace
}  // namespace tavio
