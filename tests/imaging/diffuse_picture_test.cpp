#include "TavioIpadSDK/imaging/diffuse_picture.h"

#include <random>

#include <gtest/gtest.h>

#include "imaging/diffused_pictures.h"
#include "support/instruction_sets.h"
#include "support/literal_imaging.h"

namespace tavio::imaging {
namespace {

// Sizes at and above the one from which on two cores are used: wide, high and narrow, so narrow
// that the strips can hardly follow each other, and with a last strip of one row.
TEST(DiffusePicture, EqualsItsLiteralTwinOnOneAndTwoCores) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    test::Random random(seed);
    const int widths[] = {100, 1000, 5100, 1, 700, 2000, 90};
    const int heights[] = {100, 1000, 130, 300000, 631, 311, 4001};
    for (std::size_t i = 0; i < std::size(widths); ++i) {
        SCOPED_TRACE(testing::Message() << widths[i] << " x " << heights[i]);
        const int kind = test::between(random, 0, test::kKinds - 1);
        const pictures::Picture picture = test::pictureOfKind(random, kind, widths[i], heights[i]);
        const Bytes expected = test::ditherLiterally(picture);
        test::withEachInstructionSet([&] {
            Bytes entries(expected.size(), 0xA5);
            diffusePicture(picture.pixels, picture.width, picture.height, entries);
            ASSERT_EQ(entries, expected);
        });
    }
}

}  // namespace
}  // namespace tavio::imaging
