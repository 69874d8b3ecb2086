#include "tavio/printing/printed_documents.h"

#include <algorithm>

namespace tavio::printing {

void PrintedDocuments::add(const PrintedPage& printed) {
    if (printed.page.pages > 1) documentOf(printed).printed.insert(printed.page.page);
}

std::vector<Warning> PrintedDocuments::warnings() const {
    std::vector<Warning> warnings;
    for (const Document& document : documents_) {
        const std::int64_t rest =
            document.pages - static_cast<std::int64_t>(document.printed.size());
        if (rest <= 0) continue;
        warnings.push_back({WarningKind::kMorePages, document.ticket, document.element, rest,
                            document.name + " has " + std::to_string(document.pages) +
                                " pages, of which " + std::to_string(rest) +
                                (rest == 1 ? " is" : " are") + " not printed"});
    }
    return warnings;
}

PrintedDocuments::Document& PrintedDocuments::documentOf(const PrintedPage& printed) {
    const auto known = std::ranges::find(documents_, printed.page.identity, &Document::identity);
    if (known != documents_.end()) return *known;
    return documents_.emplace_back(Document{printed.page.identity,
                                            printed.page.name,
                                            printed.page.pages,
                                            {},
                                            printed.ticket,
                                            printed.element});
}

}  // namespace tavio::printing
