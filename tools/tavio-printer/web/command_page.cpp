#include "tools/tavio-printer/web/command_page.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <ostream>
#include <streambuf>
#include <string_view>

#include "tavio/virtual-printer/decode_listing.h"

namespace tavio::virtual_printer {
namespace {

// Decoding this many bytes takes a few milliseconds.
constexpr std::size_t kMaxAtOnce = std::size_t{64} << 10U;

constexpr std::string_view kGap = "  ";  // between the columns of a listing

// Receives a listing and keeps the lines of one page.
class PageWriter final : public std::streambuf {
  public:
    PageWriter(const ProblemList& problems, std::uint64_t first)
        : problems_(problems.kept()), first_(first), order_(problems_.size()) {
        page_.problemLines.resize(problems_.size(), 0);
        std::iota(order_.begin(), order_.end(), std::size_t{0});
        std::stable_sort(order_.begin(), order_.end(), [this](std::size_t a, std::size_t b) {
            return problems_[a].offset < problems_[b].offset;
        });
    }

    CommandPage take() {
        placeProblemsBefore(UINT64_MAX);
        return std::move(page_);
    }

  protected:
    std::streamsize xsputn(const char* text, std::streamsize size) override {
        for (std::streamsize index = 0; index < size; ++index) put(text[index]);
        return size;
    }
    int_type overflow(int_type character) override {
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            put(traits_type::to_char_type(character));
        }
        return traits_type::not_eof(character);
    }

  private:
    void put(char character) {
        if (character != '\n') {
            line_ += character;
            return;
        }
        takeLine(line_);
        line_.clear();
    }

    void takeLine(std::string_view line);
    void placeProblemsBefore(std::uint64_t offset);

    const std::vector<Problem>& problems_;
    std::uint64_t first_;
    std::vector<std::size_t> order_;  // of the problems, by offset
    std::size_t placed_ = 0;          // the number of them that have their line
    bool ended_ = false;              // the listing's own problems follow, which are ignored
    std::string line_;
    CommandPage page_;
};

// All problems with smaller offsets belong to the line before.
void PageWriter::placeProblemsBefore(std::uint64_t offset) {
    while (placed_ < order_.size() && problems_[order_[placed_]].offset < offset) {
        page_.problemLines[order_[placed_]] = page_.count == 0 ? 0 : page_.count - 1;
        ++placed_;
    }
}

void PageWriter::takeLine(std::string_view line) {
    CommandLine parts;
    const auto [stop, error] =
        std::from_chars(line.data(), line.data() + line.size(), parts.offset);
    if (ended_ || error != std::errc()) {
        ended_ = true;
        return;
    }
    placeProblemsBefore(parts.offset);
    if (page_.count++ < first_ || page_.lines.size() == kMaxCommandLines) return;

    line.remove_prefix(static_cast<std::size_t>(stop - line.data()) + kGap.size());
    // Unknown commands and texts may have two spaces side by side, meanings may not.
    const std::size_t gap = line.starts_with("text: ") ? std::string_view::npos : line.rfind(kGap);
    if (gap == std::string_view::npos) {
        parts.meaning = line;
    } else {
        parts.command = line.substr(0, gap);
        parts.meaning = line.substr(gap + kGap.size());
    }
    page_.lines.push_back(std::move(parts));
}

}  // namespace

CommandPage commandPage(std::span<const Byte> bytes, const ProblemList& problems,
                        std::uint64_t first, const std::function<bool()>& shouldContinue) {
    PageWriter writer(problems, first);
    std::ostream out(&writer);
    DecodeListing listing(out);
    while (!bytes.empty() && (!shouldContinue || shouldContinue())) {
        const std::size_t count = std::min(bytes.size(), kMaxAtOnce);
        listing.feed(bytes.first(count));
        bytes = bytes.subspan(count);
    }
    listing.finish();
    return writer.take();
}

}  // namespace tavio::virtual_printer
