// The pages of a document that are to be printed: the value of --page and --pages.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tavio::tool {

struct PageRange {
    std::int32_t first = 1;
    std::int32_t last = 1;

    bool operator==(const PageRange&) const = default;
};

struct PageList {
    std::vector<PageRange> ranges;  // none: the first page, unless all are wanted
    bool all = false;

    bool isGiven() const { return all || !ranges.empty(); }
    bool operator==(const PageList&) const = default;

    // The numbers in the order of the list; pageCount: of the document, for all of them.
    std::vector<std::int32_t> numbers(std::int32_t pageCount) const;
};

// The largest number of pages that one list may name.
inline constexpr std::int32_t kMaxPages = 10'000;

// "all", or numbers and ranges from 1 on: "3", "1-5", "1,3,5-7". None for any other text.
std::optional<PageList> parsePages(std::string_view text);

}  // namespace tavio::tool
