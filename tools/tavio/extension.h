// The kind of a document, by its file's extension.
#pragma once

#include <string>
#include <string_view>

namespace tavio::tool {

enum class DocumentKind { kText, kPdf, kPicture };

// The use of a document.
enum class Use { kPrint, kLogo };

// The kind of the document at `path`, whose extension (without the dot) is `extension`. Throws
// Failure, which names the supported extensions, if it cannot be used so.
DocumentKind documentKind(const std::string& path, std::string_view extension, Use use);

}  // namespace tavio::tool
