// What the machine's settings of fonts change, and what they do not.

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/words/draw_words.h"
#include "pdf/pdf_builder.h"
#include "words/words_fixture.h"

namespace tavio::test {
namespace {

using words::DrawnWords;
using words::drawWords;
using words::Outcome;

std::string settingsOf(const std::string& rules) {
    return R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>)" +
           rules + "</fontconfig>\n";
}

constexpr const char* kGrey = R"(<match target="font">
  <edit name="antialias" mode="assign"><bool>true</bool></edit>
  <edit name="hinting" mode="assign"><bool>false</bool></edit>
  <edit name="hintstyle" mode="assign"><const>hintnone</const></edit>
  <edit name="autohint" mode="assign"><bool>true</bool></edit>
</match>)";
constexpr const char* kBoldAndSlanted = R"(<match target="font">
  <edit name="embolden" mode="assign"><bool>true</bool></edit>
  <edit name="matrix" mode="assign"><matrix>
    <double>1</double><double>0.5</double><double>0</double><double>1</double>
  </matrix></edit>
</match>)";

class MachineSettings : public testing::Test {
  protected:
    MachineSettings() {
        folder_.write("fonts.conf", settingsOf(std::string(kGrey) + kBoldAndSlanted));
        ::setenv("FONTCONFIG_FILE", folder_.path("fonts.conf").c_str(), 1);
    }
    ~MachineSettings() override { ::unsetenv("FONTCONFIG_FILE"); }

    // By a program that is started now, with these settings.
    static DrawnWords drawn(const words::WordsOrder& order) {
        return drawWords(order, {}, TAVIO_BIN_DIR "/tavio-words");
    }

    DocumentFolder folder_;
};

TEST_F(MachineSettings, ChangeNoDotOfAFontFile) {
    const DrawnWords here = drawn(orderOf("Caf\u00e9, 26 \u20ac"));
    ::unsetenv("FONTCONFIG_FILE");
    const DrawnWords elsewhere = drawn(orderOf("Caf\u00e9, 26 \u20ac"));
    ASSERT_EQ(here.outcome, Outcome::kDrawn);
    EXPECT_EQ(here.width, elsewhere.width);
    EXPECT_EQ(here.bits, elsewhere.bits);
}

TEST_F(MachineSettings, SayWhichFacesThereAre) {
    words::WordsOrder order = orderOf("Row F");
    order.font = {};
    EXPECT_EQ(drawn(order).outcome, Outcome::kNoFace) << "not one font";
    ::unsetenv("FONTCONFIG_FILE");
    EXPECT_EQ(drawn(order).outcome, Outcome::kDrawn);
}

TEST_F(MachineSettings, MakeNoLetterGreyOrItsStemsUneven) {
    const std::string folders = "<dir>" TAVIO_EXAMPLES_DIR "/fonts</dir><cachedir>" +
                                folder_.path("cache").string() + "</cachedir>";
    folder_.write("fonts.conf", settingsOf(folders + kGrey));
    words::WordsOrder order = orderOf("Row F");
    const DrawnWords ofFile = drawn(order);
    order.font = {};
    order.face = "DejaVu Sans";
    const DrawnWords ofMachine = drawn(order);
    ASSERT_EQ(ofMachine.outcome, Outcome::kDrawn);
    EXPECT_EQ(ofMachine.bits, ofFile.bits);
}

}  // namespace
}  // namespace tavio::test
