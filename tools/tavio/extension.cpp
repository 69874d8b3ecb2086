#include "tools/tavio/extension.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "TavioIpadSDK/intake/routes.h"
#include "tools/tavio/failure.h"

namespace tavio::tool {

namespace {

// For the list in messages; intake::routeOf decides.
constexpr std::string_view kExtensions[] = {"TXT", "PDF", "PNG", "JPG", "JPEG", "BMP"};

std::string changed(std::string_view extension, int (*change)(int)) {
    std::string result(extension);
    std::transform(result.begin(), result.end(), result.begin(), [change](unsigned char character) {
        return static_cast<char>(change(character));
    });
    return result;
}

std::optional<DocumentKind> kindOf(std::string_view extension) {
    switch (intake::routeOf(extension)) {
        case intake::Route::kNone:
            break;
        case intake::Route::kText:
            return DocumentKind::kText;
        case intake::Route::kPage:
            return DocumentKind::kPdf;
        case intake::Route::kPhoto:
            return DocumentKind::kPicture;
    }
    return std::nullopt;
}

bool serves(DocumentKind kind, Use use) {
    return use == Use::kPrint || kind != DocumentKind::kText;
}

std::string supported(Use use) {
    std::string list;
    for (std::string_view extension : kExtensions) {
        for (const std::string& spelling :
             {changed(extension, std::toupper), changed(extension, std::tolower)}) {
            auto kind = kindOf(spelling);
            if (kind && serves(*kind, use)) list.append(" ").append(spelling);
        }
    }
    return "supported are" + list;
}

std::string whyNot(std::string_view extension, Use use) {
    if (extension.empty()) return "it has no extension";
    std::string quoted = "\"";
    quoted.append(extension).append("\"");
    const std::string small = changed(extension, std::tolower);
    auto kind = kindOf(small);
    if (!kind) return "its extension " + quoted + " is not supported";
    if (!serves(*kind, use)) return "a text file has no picture";
    return "its extension is spelled " + quoted + ", and only " + changed(extension, std::toupper) +
           " and " + small + " are taken, so rename it";
}

}  // namespace

DocumentKind documentKind(const std::string& path, std::string_view extension, Use use) {
    auto kind = kindOf(extension);
    if (kind && serves(*kind, use)) return *kind;
    const char* verb = use == Use::kPrint ? " cannot be printed: " : " cannot become a logo: ";
    throw Failure(path + verb + whyNot(extension, use) + "; " + supported(use), "unknown-format");
}

}  // namespace tavio::tool
