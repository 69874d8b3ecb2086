#include "record.h"

#include <cstring>
#include <iomanip>
#include <ostream>

namespace compare {
namespace {

constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;

std::uint64_t mixed(std::uint64_t hash, std::uint64_t word) {
    hash = (hash ^ word) * kFactor;
    return hash ^ (hash >> 29);
}

bool isReadable(char c) {
    return c >= ' ' && c <= '~' && c != '\\';
}

// Printer commands begin with "<": each gets a line of its own.
void printBytes(std::ostream& out, std::string_view bytes) {
    constexpr char kHex[] = "0123456789abcdef";
    out << "   ";
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const char c = bytes[at];
        const auto byte = static_cast<unsigned char>(c);
        if (c == '<' && at > 0) out << "\n   ";
        if (isReadable(c)) {
            out << c;
        } else {
            out << "\\x" << kHex[byte >> 4U] << kHex[byte & 15U];
        }
    }
    out << '\n';
}

}  // namespace

void Record::bytes(const std::string& what, std::span<const tavio::Byte> bytes) {
    entries_.push_back({what + ": " + std::to_string(bytes.size()) + " bytes",
                        std::string(bytes.begin(), bytes.end())});
}

void Record::text(const std::string& what, const tavio::Text& text) {
    if (!text) return line(what + ": no text");
    entries_.push_back({what + ": text of " + std::to_string(text->size()) + " bytes", *text});
}

std::uint64_t Record::hash() const {
    std::uint64_t hash = entries_.size();
    for (const Entry& entry : entries_) hash = hashOf(entry.bytes, hashOf(entry.what, hash));
    return hash;
}

void Record::print(std::ostream& out) const {
    for (const Entry& entry : entries_) {
        out << entry.what << '\n';
        if (!entry.bytes.empty()) printBytes(out, entry.bytes);
    }
}

Record& record() {
    static Record running;
    return running;
}

std::uint64_t hashOf(std::string_view bytes, std::uint64_t start) {
    std::uint64_t hash = mixed(start, bytes.size());
    while (!bytes.empty()) {
        std::uint64_t word = 0;
        const std::size_t count = bytes.copy(reinterpret_cast<char*>(&word), sizeof word);
        bytes.remove_prefix(count);
        hash = mixed(hash, word);
    }
    return hash;
}

}  // namespace compare
