// What a document is: by --type, by its file's extension, or by its content.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/document_info.h"
#include "tools/tavio/extension.h"

namespace tavio::tool {

// The kind of a document of this format.
DocumentKind kindOf(printing::Format format);

// The kind of a regular file. Throws Failure if there is none.
DocumentKind kindOfFile(const std::string& path, std::optional<printing::Format> type, Use use);

// The kind of what came through a stream. Throws Failure if it cannot be printed.
DocumentKind kindOfContent(const std::string& name, std::span<const Byte> content,
                           std::optional<printing::Format> type, Use use);

}  // namespace tavio::tool
