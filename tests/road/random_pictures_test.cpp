// Ten thousand random pictures through the whole road, byte for byte like the slow twins.

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/imaging/state.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/literal_encoder.h"
#include "support/literal_imaging.h"
#include "support/random_picture.h"

namespace tavio {
namespace {

using pictures::Picture;
using test::between;
using test::chance;
using test::LiteralJob;
using test::transport;

constexpr unsigned kShards = 20;
constexpr unsigned kPicturesPerShard = 500;

LiteralJob randomJob(test::Random& random) {
    LiteralJob job;
    job.orientation = chance(random, 50) ? "<LM>" : "<PM>";
    if (chance(random, 33)) job.logoNumber = std::to_string(between(random, 0, 99));
    job.row = chance(random, 30) ? 0 : between(random, -300, 2000);
    job.column = chance(random, 30) ? 0 : between(random, -300, 2000);
    job.portraitDots = chance(random, 80) ? 576 : 0;
    return job;
}

void takeOver(const LiteralJob& job) {
    PrinterOrientation = job.orientation;
    LogoNumber = job.logoNumber;
    originalx = job.row;
    originaly = job.column;
    portrait_dots = job.portraitDots;
}

class RandomPictures : public test::FreshState, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomPictures, PrintByteForByteLikeTheSlowTwins) {
    Mode = "WF";
    for (unsigned i = 0; i < kPicturesPerShard; ++i) {
        const unsigned seed = GetParam() * kPicturesPerShard + i;
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Picture picture = test::randomPicture(random, 200);
        const LiteralJob job = randomJob(random);
        ImageDithered = chance(random, 60);
        takeOver(job);
        transport().calls.clear();
        imaging::PrintBMP(picture.width, picture.height, picture);

        const Bytes entries =
            ImageDithered ? test::ditherLiterally(picture) : test::thresholdLiterally(picture);
        const Bytes file = test::bitmapFileLiterally(entries, picture.width, picture.height);
        ASSERT_EQ(*imaging::myImageData, file);
        const test::LiteralTraffic literal = test::encodeLiterally(file, job);
        ASSERT_EQ(transport().dataSent(), literal.data);
        ASSERT_EQ(transport().textSent(), literal.text);
    }
}

INSTANTIATE_TEST_SUITE_P(Shard, RandomPictures, testing::Range(0U, kShards));

}  // namespace
}  // namespace tavio
