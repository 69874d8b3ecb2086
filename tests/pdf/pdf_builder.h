// Small PDF documents written as text, and a folder to put them in.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/platform/url.h"
#include "support/temporary_folder.h"

namespace tavio::test {

// Numbers objects from 1 in the order of adding and writes the cross-reference table.
class PdfBuilder {
  public:
    // Each returns the new object's number. A number may be used before its object is added.
    int add(std::string_view body);
    int addStream(std::string_view dictionaryEntries, std::string_view data);

    // The document; `trailerEntries` as in "/Root 1 0 R".
    std::string finish(std::string_view trailerEntries) const;

  private:
    std::vector<std::string> objects_;
};

struct PageText {
    std::string entries = "/MediaBox [0 0 612 792]";  // of the page's dictionary
    std::string content;                              // drawing operators
};

// A document of these pages. `inherited` are entries of the page tree's root.
std::string documentOf(const std::vector<PageText>& pages, std::string_view inherited = "");

// A document that needs a password.
std::string encryptedDocument();

// A document whose page takes far too long to draw: nested forms that each draw the next one fifty
// times, 50^5 rectangles.
std::string endlessDocument();

inline std::span<const Byte> bytesOf(const std::string& text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

// A page of 100 by 100 points with a black annotation of 10 by 10 at its bottom left corner.
std::string annotatedDocument(const std::string& subtype, const std::string& flags);

// A folder for documents, gone with the object. What cannot be written throws.
class DocumentFolder : public TemporaryFolder {
  public:
    std::filesystem::path path(std::string_view name) const {
        return std::filesystem::path(TemporaryFolder::path()) / name;
    }
    platform::Url write(std::string_view name, std::string_view bytes) const;
    std::string writeProgram(std::string_view name, std::string_view shellScript) const;
};

}  // namespace tavio::test
