// Which pages of which documents are printed, to tell of those that are not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tavio/printing/encoded_parts.h"
#include "tavio/printing/result.h"

namespace tavio::printing {

// A page with the element that prints it.
struct PrintedPage {
    std::size_t ticket = 0;   // as in Problem
    std::size_t element = 0;  // as in Problem
    DocumentPage page;
};

class PrintedDocuments {
  public:
    void add(const PrintedPage& printed);

    // One for each document that has more pages, in the order of printing.
    std::vector<Warning> warnings() const;

  private:
    struct Document {
        std::string identity;  // as in DocumentPage
        std::string name;
        std::int32_t pages = 0;
        std::set<std::int32_t> printed;
        std::size_t ticket = 0;  // where it is printed first
        std::size_t element = 0;
    };
    Document& documentOf(const PrintedPage& printed);

    std::vector<Document> documents_;  // of several pages, in the order of printing
};

}  // namespace tavio::printing
