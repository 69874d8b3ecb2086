#include "TavioIpadSDK/imaging/grey.h"

#include <gtest/gtest.h>

namespace tavio::imaging {
namespace {

TEST(Grey, DecidesEveryColourAsTheDoubleFormulaDoes) {
    int differing = 0;
    for (int red = 0; red < 256; ++red) {
        for (int green = 0; green < 256; ++green) {
            for (int blue = 0; blue < 256; ++blue) {
                double sum = 0.299 * red;
                sum = sum + 0.587 * green;
                sum = sum + 0.114 * blue;
                const bool isBelow = static_cast<int>(sum) < 128;
                const bool decided = isBlack(static_cast<Byte>(red), static_cast<Byte>(green),
                                             static_cast<Byte>(blue));
                if (decided != isBelow) ++differing;
            }
        }
    }
    EXPECT_EQ(differing, 0);
}

TEST(Grey, LosesOneForMidGreyAndNotForTheNext) {
    EXPECT_EQ(greyValue(128, 128, 128), 127);
    EXPECT_EQ(greyValue(129, 129, 129), 129);
    EXPECT_EQ(greyValue(255, 255, 255), 255);
    EXPECT_EQ(greyValue(0, 0, 0), 0);
}

}  // namespace
}  // namespace tavio::imaging
