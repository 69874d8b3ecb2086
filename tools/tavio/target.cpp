#include "tools/tavio/target.h"

#include <array>

namespace tavio::tool {

namespace {

// A kind of target that begins with its scheme.
struct Scheme {
    std::string_view text;
    std::optional<Target> (*parse)(std::string_view rest);
    const char* wanted;  // the form to give
};

template <typename Address>
std::optional<Target> asTarget(const std::optional<Address>& address) {
    if (!address) return std::nullopt;
    return Target(*address);
}

constexpr std::array<Scheme, 4> kSchemes{{
    {"file:",
     [](std::string_view rest) -> std::optional<Target> {
         if (rest.empty() || rest.find('\0') != std::string_view::npos) return std::nullopt;
         return FileTarget{std::string(rest)};
     },
     "file:NAME"},
    {"tcp://", [](std::string_view rest) { return asTarget(links::parseTcpAddress(rest)); },
     "tcp://HOST or tcp://HOST:PORT with a port from 1 to 65535, an IPv6 address in brackets"},
    {"bt://", [](std::string_view rest) { return asTarget(links::parseRfcommAddress(rest)); },
     "bt://AA:BB:CC:DD:EE:FF or bt://AA:BB:CC:DD:EE:FF/CHANNEL with a channel from 1 to 30"},
    {"tty:", [](std::string_view rest) { return asTarget(links::parseSerialAddress(rest)); },
     "tty:DEVICE or tty:DEVICE?baud=RATE with one of the usual rates from 1200 to 4000000"},
}};

const Scheme* schemeOf(std::string_view text) {
    for (const Scheme& scheme : kSchemes) {
        if (text.starts_with(scheme.text)) return &scheme;
    }
    return nullptr;
}

}  // namespace

std::optional<Target> parseTarget(std::string_view text) {
    if (text == "-") return StandardOutputTarget{false};
    if (text == "png:-") return StandardOutputTarget{true};
    if (const Scheme* scheme = schemeOf(text))
        return scheme->parse(text.substr(scheme->text.size()));
    if (!isPictureName(text)) return std::nullopt;
    return PictureTarget{std::string(text)};
}

std::string whyNoTarget(std::string_view text) {
    std::string sentence = "\"";
    sentence.append(text).append("\" is no place to print to: give ");
    if (const Scheme* scheme = schemeOf(text)) return sentence + scheme->wanted;
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
