#include "tavio/extension.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

#include "tavio/failure.h"

namespace tavio::tool {

namespace {

struct Row {
    std::string_view capital;
    std::string_view small;
    DocumentKind kind;
};

constexpr std::array<Row, 6> kRows{{
    {"TXT", "txt", DocumentKind::kText},
    {"PDF", "pdf", DocumentKind::kPdf},
    {"PNG", "png", DocumentKind::kPicture},
    {"JPG", "jpg", DocumentKind::kPicture},
    {"JPEG", "jpeg", DocumentKind::kPicture},
    {"BMP", "bmp", DocumentKind::kPicture},
}};

bool serves(const Row& row, Use use) {
    return use == Use::kPrint || row.kind != DocumentKind::kText;
}

std::string supported(Use use) {
    std::string list;
    for (const Row& row : kRows) {
        if (!serves(row, use)) continue;
        if (!list.empty()) list += ' ';
        list.append(row.capital).append(" ").append(row.small);
    }
    return "supported are " + list;
}

const Row* rowOfMixedCase(std::string_view extension) {
    std::string small(extension);
    std::transform(small.begin(), small.end(), small.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    auto row = std::find_if(kRows.begin(), kRows.end(),
                            [&](const Row& candidate) { return candidate.small == small; });
    return row == kRows.end() ? nullptr : row;
}

std::string whyNot(std::string_view extension, Use use) {
    if (extension.empty()) return "it has no extension";
    std::string quoted = "\"";
    quoted.append(extension).append("\"");
    const Row* row = rowOfMixedCase(extension);
    if (row == nullptr) return "its extension " + quoted + " is not supported";
    if (!serves(*row, use)) return "a text file has no picture";
    return "its extension is spelled " + quoted + ", and only " + std::string(row->capital) +
           " and " + std::string(row->small) + " are taken, so rename it";
}

}  // namespace

DocumentKind documentKind(const std::string& path, std::string_view extension, Use use) {
    for (const Row& row : kRows) {
        bool matches = extension == row.capital || extension == row.small;
        if (matches && serves(row, use)) return row.kind;
    }
    const char* verb = use == Use::kPrint ? " cannot be printed: " : " cannot become a logo: ";
    throw Failure(path + verb + whyNot(extension, use) + "; " + supported(use));
}

}  // namespace tavio::tool
