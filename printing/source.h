// Where a document comes from: a file, or bytes in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"

namespace tavio::printing {

// A file's path or a file's bytes. A file is opened and read once, by encode(); what is checked is
// what is printed. Copies share the bytes.
class TAVIO_API Source {
  public:
    // path: UTF-8. The file must be regular.
    static Source file(std::string path);

    // The bytes of a file. name: for messages, "" if it has none.
    static Source bytes(Bytes bytes, std::string name = "");
    static Source bytes(std::shared_ptr<const Bytes> bytes, std::string name = "");

    // The path of a file, the name of bytes.
    const std::string& name() const { return name_; }

    // Null for a file, and if there was no memory for the bytes.
    const std::shared_ptr<const Bytes>& content() const { return content_; }

    // True if there was no memory for the bytes; encode() then gives kOverMemory.
    bool isIncomplete() const { return isIncomplete_; }

  private:
    template <typename MakeContent>
    static Source withContent(std::string name, MakeContent makeContent);

    Source(std::string name, std::shared_ptr<const Bytes> content)
        : name_(std::move(name)), content_(std::move(content)) {}

    std::string name_;
    std::shared_ptr<const Bytes> content_;
    bool isIncomplete_ = false;
};

}  // namespace tavio::printing
