// The public suite of good, questionable and bad BMP files: what becomes of each.

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"

namespace tavio::pictures {
namespace {

using samples::asText;
using samples::corpusFile;
using samples::corpusNames;
using samples::decoded;
using samples::refusal;

// For each file the reference picture that it equals in every pixel, or "!" and the reason why it
// is refused. "*" is a picture without an exact reference in the suite.
using Outcomes = std::map<std::string, std::string>;

constexpr const char* kUnsupported = "!the BMP file is of a kind not supported";
constexpr const char* kBadHeader = "!the BMP file has a damaged header";
constexpr const char* kOutside = "!the BMP file draws outside of its picture";
constexpr const char* kBadIndex = "!the BMP file has a pixel outside of its palette";
constexpr const char* kTooLarge = "!the BMP file has too many pixels";
constexpr const char* kNoRoom = "!the BMP file has no room for its palette";
constexpr const char* kCutShort = "!the BMP file is cut short";
constexpr const char* kUnknown = "!the file is neither a PNG nor a JPEG nor a BMP";

const Outcomes& goodFiles() {
    static const Outcomes outcomes = {
        {"pal1", "pal1"},
        {"pal1bg", "pal1bg"},
        {"pal1wb", "pal1"},
        {"pal4", "pal4"},
        {"pal4gs", "pal4gs"},
        {"pal4rle", "pal4"},
        {"pal8", "pal8"},
        {"pal8-0", "pal8"},
        {"pal8gs", "pal8gs"},
        {"pal8nonsquare", "pal8nonsquare-e"},  // as stored, not in proportion
        {"pal8os2", "pal8"},
        {"pal8rle", "pal8"},
        {"pal8topdown", "pal8"},
        {"pal8v4", "pal8"},
        {"pal8v5", "pal8"},
        {"pal8w124", "pal8w124"},
        {"pal8w125", "pal8w125"},
        {"pal8w126", "pal8w126"},
        {"rgb16", "rgb16"},
        {"rgb16-565", "rgb16-565"},
        {"rgb16-565pal", "rgb16-565"},
        {"rgb16bfdef", "rgb16"},
        {"rgb24", "rgb24"},
        {"rgb24pal", "rgb24"},
        {"rgb32", "rgb24"},
        {"rgb32bf", "rgb24"},
        {"rgb32bfdef", "rgb24"},
    };
    return outcomes;
}

const Outcomes& questionableFiles() {
    static const Outcomes outcomes = {
        {"pal1huff", kUnsupported},  // a coding for fax
        {"pal1p1", "pal1p1"},
        {"pal2", "pal2"},
        {"pal2color", "pal2color"},
        {"pal4rlecut", "pal4rlecut"},  // transparent where nothing is drawn
        {"pal4rletrns", "pal4rletrns"},
        {"pal8offs", "pal8"},
        {"pal8os2-hs", "pal8"},
        {"pal8os2-sz", "pal8"},
        {"pal8os2sp", "pal8"},
        {"pal8os2v2", "pal8"},
        {"pal8os2v2-16", "pal8"},
        {"pal8os2v2-40sz", "pal8"},
        {"pal8os2v2-sz", "pal8"},
        {"pal8oversizepal", "pal8"},
        {"pal8rlecut", "pal8rlecut"},
        {"pal8rletrns", "pal8rletrns"},
        {"rgb16-231", "rgb16-231"},
        {"rgb16-3103", "rgb16-3103"},
        {"rgb16faketrns", "rgb16"},  // no mask for alpha, so no alpha
        {"rgb24jpeg", "*"},          // JPEG loses a little
        {"rgb24largepal", "rgb24"},
        {"rgb24lprof", "rgb24"},
        {"rgb24png", "rgb24"},
        {"rgb24prof", "rgb24"},
        {"rgb24prof2", "*"},    // its colour profile, which is not applied, swaps colours
        {"rgb32-111110", "*"},  // differs from rgb24 by at most 1
        {"rgb32-7187", "rgb32-7187"},
        {"rgb32-xbgr", "rgb24"},
        {"rgb32fakealpha", "rgb24"},
        {"rgb32h52", "rgb24"},
        {"rgba16-1924", "rgba16-1924"},
        {"rgba16-4444", "rgba16-4444"},
        {"rgba16-5551", "rgba16-5551"},
        {"rgba32", "rgba32"},
        {"rgba32-1010102", "rgba32-1010102"},
        {"rgba32-61754", "rgba32-61754"},
        {"rgba32-81284", "rgba32-81284"},
        {"rgba32abf", "rgba32"},
        {"rgba32h56", "rgba32"},
    };
    return outcomes;
}

const Outcomes& badFiles() {
    static const Outcomes outcomes = {
        {"badbitcount", kUnsupported},
        {"badbitssize", "pal1"},  // a size that follows from the others anyway
        {"baddens1", "pal1"},     // dots per metre, not used
        {"baddens2", "pal1"},
        {"badfilesize", "pal1"},  // what counts is the size that the file has
        {"badheadersize", kUnsupported},
        {"badpalettesize", kNoRoom},
        {"badplanes", kBadHeader},
        {"badrle", kOutside},
        {"badrle4", kOutside},
        {"badrle4bis", kOutside},
        {"badrle4ter", kOutside},
        {"badrlebis", kOutside},
        {"badrleter", kOutside},
        {"badwidth", kBadHeader},
        {"pal8badindex", kBadIndex},
        {"reallybig", kTooLarge},
        {"rgb16-880", "rgb16-880"},
        {"rletopdown", kBadHeader},
        {"shortfile", kCutShort},
    };
    return outcomes;
}

void expectOutcomes(const std::string& folder, const Outcomes& outcomes) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    const std::vector<std::string> names = corpusNames(folder, ".bmp");
    EXPECT_EQ(names.size(), outcomes.size());
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const Bytes file = corpusFile(std::string(folder).append("/").append(name));
        const auto outcome = outcomes.find(name.substr(0, name.size() - 4));
        ASSERT_NE(outcome, outcomes.end()) << "no outcome is stated";
        if (outcome->second.front() == '!') {
            EXPECT_EQ(refusal(file), outcome->second.substr(1));
            continue;
        }
        const Picture picture = decoded(file);
        EXPECT_EQ(picture.orientation, 1);
        if (outcome->second == "*") {
            EXPECT_EQ(picture.width, 127);
            EXPECT_EQ(picture.height, 64);
            continue;
        }
        const Picture reference = decoded(corpusFile("bmp/reference/" + outcome->second + ".png"));
        EXPECT_EQ(picture.width, reference.width);
        EXPECT_TRUE(asText(picture) == asText(reference)) << "differs from " << outcome->second;
    }
}

TEST(BmpSuite, DecodesAllGoodFilesExactly) {
    expectOutcomes("bmp/g", goodFiles());
}

TEST(BmpSuite, DecodesQuestionableFilesOrSaysWhyNot) {
    expectOutcomes("bmp/q", questionableFiles());
}

TEST(BmpSuite, RefusesWhatCannotBeTrusted) {
    expectOutcomes("bmp/b", badFiles());
}

TEST(BmpSuite, RefusesABitmapArray) {
    expectOutcomes("bmp/x", {{"ba-bm", kUnknown}});
}

TEST(BmpSuite, KeepsElevenBitsOfAColourToTheNearest) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    const Picture picture = decoded(corpusFile("bmp/q/rgb32-111110.bmp"));
    const Picture reference = decoded(corpusFile("bmp/reference/rgb24.png"));
    ASSERT_EQ(picture.pixels.size(), reference.pixels.size());
    for (std::size_t at = 0; at < picture.pixels.size(); ++at) {
        for (const unsigned shift : {0U, 8U, 16U, 24U}) {
            ASSERT_NEAR((picture.pixels[at] >> shift) & 0xFF,
                        (reference.pixels[at] >> shift) & 0xFF, 1)
                << at;
        }
    }
}

}  // namespace
}  // namespace tavio::pictures
