#include "tools/tavio/page_list.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "tools/tavio/option_values.h"

namespace tavio::tool {

namespace {

constexpr std::int32_t kMaxPageNumber = 1'000'000;

std::optional<std::int32_t> pageNumber(std::string_view text) {
    const bool isPlain = text.find_first_not_of("0123456789") == std::string_view::npos;
    auto number = isPlain ? parseNumber(text) : std::nullopt;
    return number && *number >= 1 && *number <= kMaxPageNumber ? number : std::nullopt;
}

std::optional<PageRange> parseRange(std::string_view text) {
    const std::size_t hyphen = text.find('-');
    const auto first = pageNumber(text.substr(0, hyphen));
    const auto last =
        hyphen == std::string_view::npos ? first : pageNumber(text.substr(hyphen + 1));
    if (!first || !last || *last < *first) return std::nullopt;
    return PageRange{*first, *last};
}

std::int64_t pagesIn(const std::vector<PageRange>& ranges) {
    return std::accumulate(ranges.begin(), ranges.end(), std::int64_t{0},
                           [](std::int64_t sum, const PageRange& range) {
                               return sum + range.last - range.first + 1;
                           });
}

}  // namespace

std::vector<std::int32_t> PageList::numbers(std::int32_t pageCount) const {
    std::vector<PageRange> wanted = ranges;
    if (all) wanted = {{1, std::max(pageCount, 1)}};
    if (wanted.empty()) wanted = {{1, 1}};
    std::vector<std::int32_t> result;
    for (const PageRange& range : wanted) {
        for (std::int32_t page = range.first; page <= range.last; ++page) result.push_back(page);
    }
    return result;
}

std::optional<PageList> parsePages(std::string_view text) {
    if (text == "all") return PageList{{}, true};
    PageList list;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t comma = std::min(text.find(',', begin), text.size());
        const auto range = parseRange(text.substr(begin, comma - begin));
        if (!range) return std::nullopt;
        list.ranges.push_back(*range);
        begin = comma + 1;
    }
    if (pagesIn(list.ranges) > kMaxPages) return std::nullopt;
    return list;
}

}  // namespace tavio::tool
