#include "TavioIpadSDK/words/helper/fonts.h"

#include <array>
#include <pango/pangofc-fontmap.h>
#include <string_view>
#include <sys/mman.h>
#include <utility>

#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/machine/write_all.h"

namespace tavio::words_helper {

namespace {

using machine::Descriptor;

// How every letter is drawn, whatever the machine's settings say. The instructions of TrueType make all
// stems of a size even. The hints of CFF say nothing of how wide a stem is in whole dots, so those fonts
// get automatic ones (as TrueType fonts without instructions do by themselves). Pictures of letters have
// no place among solid ones. A bold or an italic that a font has not is made.
constexpr const char* kRules = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <selectfont><rejectfont>
    <pattern><patelt name="color"><bool>true</bool></patelt></pattern>
    <pattern><patelt name="scalable"><bool>false</bool></patelt></pattern>
  </rejectfont></selectfont>
  <match target="font">
    <test name="slant"><const>roman</const></test>
    <test name="slant" target="pattern" compare="not_eq"><const>roman</const></test>
    <edit name="slant" mode="assign"><const>oblique</const></edit>
    <edit name="matrix" mode="assign"><matrix>
      <double>1</double><double>0.2</double><double>0</double><double>1</double>
    </matrix></edit>
  </match>
  <match target="font">
    <test name="weight" compare="less_eq"><const>medium</const></test>
    <test name="weight" target="pattern" compare="more_eq"><const>bold</const></test>
    <edit name="weight" mode="assign"><const>bold</const></edit>
    <edit name="embolden" mode="assign"><bool>true</bool></edit>
  </match>
  <match target="font">
    <edit name="antialias" mode="assign"><bool>false</bool></edit>
    <edit name="hinting" mode="assign"><bool>true</bool></edit>
    <edit name="autohint" mode="assign"><bool>false</bool></edit>
    <edit name="hintstyle" mode="assign"><const>hintfull</const></edit>
    <edit name="rgba" mode="assign"><const>none</const></edit>
    <edit name="embeddedbitmap" mode="assign"><bool>false</bool></edit>
  </match>
  <match target="font">
    <test name="fontformat"><string>CFF</string></test>
    <edit name="autohint" mode="assign"><bool>true</bool></edit>
  </match>
</fontconfig>)";

bool addRules(FcConfig* config) {
    return FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8*>(kRules),
                                          FcFalse) != FcFalse;
}

const FcChar8* fontText(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

// The machine's fonts, if they are loaded; they stay for all texts.
FontConfig& machineFonts() {
    static FontConfig fonts;
    return fonts;
}

bool hasFamily(FcConfig* config, const std::string& family) {
    const FontPattern wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, fontText(family));
    const FontProperties properties(FcObjectSetBuild(FC_FAMILY, nullptr));
    const FontSet found(FcFontList(config, wanted.get(), properties.get()));
    return found && found->nfont > 0;
}

bool hasFonts(FcConfig* config) {
    const FcFontSet* fonts = FcConfigGetFonts(config, FcSetSystem);
    return fonts != nullptr && fonts->nfont > 0;
}

// The machine's name of a face that is there on every machine; "" for any other face.
std::string_view genericFamily(std::string_view face) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kFaces = {
        {{"sans", "sans-serif"}, {"serif", "serif"}, {"mono", "monospace"}}};
    for (const auto& [name, family] : kFaces)
        if (face == name) return family;
    return "";
}

// The bytes as a file that can be opened by a path.
Descriptor fileOf(std::span<const Byte> bytes) {
    Descriptor file(::memfd_create("font", MFD_CLOEXEC));
    if (file.isOpen() && machine::writeAll(file.get(), std::as_bytes(bytes)) != 0) file.reset();
    return file;
}

std::string familyOf(FcPattern* font) {
    FcChar8* family = nullptr;
    if (FcPatternGetString(font, FC_FAMILY, 0, &family) != FcResultMatch) return "";
    return reinterpret_cast<const char*>(family);
}

// Letters are set by the tables of TrueType and OpenType.
bool canBeSet(FcPattern* font) {
    FcChar8* format = nullptr;
    if (FcPatternGetString(font, FC_FONTFORMAT, 0, &format) != FcResultMatch) return false;
    const std::string_view name(reinterpret_cast<const char*>(format));
    return name == "TrueType" || name == "CFF";
}

}  // namespace

void loadFontsOfMachine() {
    FontConfig config(FcInitLoadConfig());
    if (config && addRules(config.get()) && FcConfigBuildFonts(config.get()) != FcFalse)
        machineFonts() = std::move(config);
}

std::optional<Fonts> fontsOfMachine(const std::string& face) {
    // A kept program may be older than a font that has been installed.
    if (!machineFonts() || FcConfigUptoDate(machineFonts().get()) == FcFalse) loadFontsOfMachine();
    if (!machineFonts()) return {};
    Fonts fonts{FontConfig(FcConfigReference(machineFonts().get())),
                std::string(genericFamily(face))};
    FcConfig* const config = fonts.config.get();
    if (!hasFonts(config)) return {};
    if (fonts.family.empty()) {
        if (!hasFamily(config, face)) return {};
        fonts.family = face;
    }
    return fonts;
}

std::optional<Fonts> fontOfFile(std::span<const Byte> file) {
    Fonts fonts{FontConfig(FcConfigCreate()), ""};
    FcConfig* const config = fonts.config.get();
    if (config == nullptr || !addRules(config)) return {};
    // It stays open as long as the program runs, which opens it again whenever it needs letters.
    const int font = fileOf(file).release();
    const std::string path = "/proc/self/fd/" + std::to_string(font);
    if (font < 0 || FcConfigAppFontAddFile(config, fontText(path)) == FcFalse) return {};
    const FcFontSet* found = FcConfigGetFonts(config, FcSetApplication);
    if (found == nullptr || found->nfont < 1 || !canBeSet(found->fonts[0])) return {};
    fonts.family = familyOf(found->fonts[0]);
    return fonts;
}

TextContext textContext(const Fonts& fonts) {
    // Else the font map would load the machine's settings beside these.
    FcConfigSetCurrent(fonts.config.get());
    const FontMap map(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
    pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(map.get()), fonts.config.get());
    TextContext context(pango_font_map_create_context(map.get()));

    const FontOptions options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_NONE);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_FULL);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_ON);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_context_set_round_glyph_positions(context.get(), TRUE);
    // The shapes of some letters depend on the language, which the program's environment must not.
    pango_context_set_language(context.get(), pango_language_from_string("en"));
    return context;
}

}  // namespace tavio::words_helper
