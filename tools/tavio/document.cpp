#include "tools/tavio/document.h"

#include "TavioIpadSDK/platform/text.h"
#include "TavioIpadSDK/platform/url.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"

namespace tavio::tool {

namespace {

DocumentKind checked(const std::string& name, DocumentKind kind, Use use) {
    if (kind == DocumentKind::kText && use == Use::kLogo) {
        throw Failure(name + " cannot become a logo: a text has no picture", "unknown-format");
    }
    return kind;
}

}  // namespace

DocumentKind kindOf(printing::Format format) {
    switch (format) {
        case printing::Format::kPdf:
            return DocumentKind::kPdf;
        case printing::Format::kPng:
        case printing::Format::kJpeg:
        case printing::Format::kBmp:
            return DocumentKind::kPicture;
        case printing::Format::kText:
            break;
    }
    return DocumentKind::kText;
}

DocumentKind kindOfFile(const std::string& path, std::optional<printing::Format> type, Use use) {
    if (type) return checked(path, kindOf(*type), use);
    try {
        return documentKind(path, URL::fromPath(path).pathExtension(), use);
    } catch (const Failure&) {
        InputFile file(path);  // that it is not there says more than its extension
        throw;
    }
}

DocumentKind kindOfContent(const std::string& name, std::span<const Byte> content,
                           std::optional<printing::Format> type, Use use) {
    if (content.empty()) throw Failure(name + " is empty", "unknown-format");
    if (!type) type = printing::formatOf(content);
    if (type) return checked(name, kindOf(*type), use);
    if (!platform::decodeUtf8(content)) {
        throw Failure(name + " cannot be printed: it is no PDF, PNG, JPEG or BMP file and no text",
                      "unknown-format");
    }
    return checked(name, DocumentKind::kText, use);
}

}  // namespace tavio::tool
