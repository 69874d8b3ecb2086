#include "state.h"

#include <TavioIpadSDK/TavioIpadSDK.h>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>

#include "record.h"
#include "work_folder.h"

namespace compare {
namespace {

void number(const std::string& name, std::int32_t value) {
    record().line(name + " = " + std::to_string(value));
}

// In hexadecimal, which shows every bit.
void number(const std::string& name, double value) {
    std::array<char, 40> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::hex);
    record().line(name + " = " + std::string(digits.data(), end.ptr));
}

void flag(const std::string& name, bool value) {
    record().line(name + (value ? " = true" : " = false"));
}

void recordSession() {
    record().text("Mode", tavio::Mode);
    flag("connectionStatus", tavio::connectionStatus);
    number("connectedBTdevices", tavio::connectedBTdevices);
    number("selectedBTindex", tavio::selectedBTindex);
    record().text("s", tavio::s);
}

void recordSettings() {
    record().text("PrinterPath", tavio::PrinterPath);
    record().text("PrinterOrientation", tavio::PrinterOrientation);
    number("PrinterResolution", tavio::PrinterResolution);
    number("StockWidth", tavio::StockWidth);
    number("StockHeight", tavio::StockHeight);
    flag("ImageScaled", tavio::ImageScaled);
    flag("ImageDithered", tavio::ImageDithered);
    number("size_indicator", tavio::size_indicator);
}

void recordDotWidths() {
    std::string all = "portrait_dot_array =";
    for (const auto& stock : tavio::portrait_dot_array)
        for (const std::int32_t dots : stock) all.append(" ").append(std::to_string(dots));
    record().line(all);
    number("portrait_dots", tavio::portrait_dots);
}

void recordJob() {
    record().text("LogoNumber", tavio::LogoNumber);
    number("originalx", tavio::originalx);
    number("originaly", tavio::originaly);
    tavio::Text name = tavio::FileName;
    if (name) name = withoutFolder(*name);
    record().text("FileName", name);
}

}  // namespace

void recordState() {
    recordSession();
    recordSettings();
    recordDotWidths();
    recordJob();
}

}  // namespace compare
