// What a document is, as its file's extension tells.
#pragma once

#include <string>
#include <string_view>

namespace tavio::tool {

enum class DocumentKind { kText, kPdf, kPicture };

// What is to become of a document.
enum class Use { kPrint, kLogo };

// The kind of the document at `path`, whose extension (without the dot) is `extension`. Throws
// Failure, which names the supported extensions, when there is no way to use it so.
DocumentKind documentKind(const std::string& path, std::string_view extension, Use use);

}  // namespace tavio::tool
