#include "tools/tavio/target.h"

#include <array>

#include "tavio/printing/printer_address.h"

namespace tavio::tool {

namespace {

constexpr std::string_view kFileScheme = "file:";

// A kind of address, after its scheme.
struct AddressScheme {
    std::string_view text;
    std::optional<Target> (*parse)(std::string_view rest);
};

template <typename Address>
std::optional<Target> asTarget(const std::optional<Address>& address) {
    if (!address) return std::nullopt;
    return Target(*address);
}

constexpr std::array<AddressScheme, 3> kAddresses{{
    {"tcp://", [](std::string_view rest) { return asTarget(links::parseTcpAddress(rest)); }},
    {"bt://", [](std::string_view rest) { return asTarget(links::parseRfcommAddress(rest)); }},
    {"tty:", [](std::string_view rest) { return asTarget(links::parseSerialAddress(rest)); }},
}};

std::optional<Target> fileTarget(std::string_view name) {
    if (name.empty() || name.find('\0') != std::string_view::npos) return std::nullopt;
    return FileTarget{std::string(name)};
}

}  // namespace

std::optional<Target> parseTarget(std::string_view text) {
    if (text == "-") return StandardOutputTarget{false};
    if (text == "png:-") return StandardOutputTarget{true};
    if (text.starts_with(kFileScheme)) return fileTarget(text.substr(kFileScheme.size()));
    for (const AddressScheme& scheme : kAddresses) {
        if (text.starts_with(scheme.text)) return scheme.parse(text.substr(scheme.text.size()));
    }
    if (!isPictureName(text)) return std::nullopt;
    return PictureTarget{std::string(text)};
}

std::string whyNoTarget(std::string_view text) {
    std::string sentence = "\"";
    sentence.append(text).append("\" is no place to print to: give ");
    if (text.starts_with(kFileScheme)) return sentence + "file:NAME";
    const std::string form = printing::addressForm(text);
    if (!form.empty()) return sentence + form;
    return sentence +
           "a name ending in .png, or file:NAME, -, png:-, tcp://HOST, bt://ADDRESS or tty:DEVICE";
}

bool isPictureName(std::string_view name) {
    return name.ends_with(".png") || name.ends_with(".PNG");
}

bool isPrinter(const Target& target) {
    return !printerAddress(target).empty();
}

std::string replacedFile(const Target& target) {
    if (const auto* picture = std::get_if<PictureTarget>(&target)) return picture->path;
    if (const auto* file = std::get_if<FileTarget>(&target)) return file->path;
    return {};
}

namespace {

// Names of the addresses' own functions, which the ones here would hide.
std::string textOf(const PictureTarget& target) {
    return target.path;
}
std::string textOf(const FileTarget& target) {
    return target.path;
}
std::string textOf(const StandardOutputTarget& /*target*/) {
    return "standard output";
}
template <typename Address>
std::string textOf(const Address& address) {
    return links::toText(address);
}

std::string addressOf(const links::TcpAddress& address) {
    return "tcp://" + links::toText(address);
}
std::string addressOf(const links::RfcommAddress& address) {
    return "bt://" + links::toText(address);
}
std::string addressOf(const links::SerialAddress& address) {
    return "tty:" + links::toText(address);
}
template <typename Other>
std::string addressOf(const Other& /*no printer*/) {
    return "";
}

}  // namespace

std::string toText(const Target& target) {
    return std::visit([](const auto& one) { return textOf(one); }, target);
}

std::string printerAddress(const Target& target) {
    return std::visit([](const auto& one) { return addressOf(one); }, target);
}

}  // namespace tavio::tool
