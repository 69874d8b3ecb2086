#include "TavioIpadSDK/sharp/passed_greys.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavio::sharp {
namespace {

using Pass = std::variant<stretch::GrowColumns, stretch::ShrinkColumns>;

// Rows that are read from the source at once.
constexpr std::int32_t kSourceRows = 64;

Pass passTo(const stretch::Axis& columns, std::uint64_t begin, std::uint64_t count) {
    if (columns.grows()) return stretch::GrowColumns(columns, begin, count);
    return stretch::ShrinkColumns(columns);
}

}  // namespace

PassedGreys::PassedGreys(std::unique_ptr<GreyRows> source, const stretch::Axis& columns,
                         std::uint64_t begin, std::uint64_t count)
    : pass_(passTo(columns, begin, count)),
      source_(std::move(source)),
      line_(static_cast<std::size_t>(source_->width())),
      sourceLeft_(static_cast<std::uint64_t>(source_->height())),
      gathered_(kGroup * line_),
      pixels_(line_) {}

stretch::PassedChannel PassedGreys::row(std::uint64_t index) {
    const std::uint64_t group = groupOf(index);
    stretch::PassedRow& passed = kept_[group % kept_.size()];
    while (groups_ <= group) {
        const Rows rows = nextGroup();
        if (groups_++ < group) continue;  // above the window
        interleave(rows);
        std::visit([&](auto& pass) { pass.pass(pixels_, passed); }, pass_);
    }
    return {passed.blocks, index % kGroup};
}

void PassedGreys::finish() {
    while (!source_->next(kSourceRows).empty()) continue;
}

// The last group of a picture may have fewer rows; then the last row counts for those that lack.
PassedGreys::Rows PassedGreys::nextGroup() {
    Rows rows{};
    const std::size_t count = std::min<std::uint64_t>(kGroup, sourceLeft_);
    const bool areTogether = rows_.size() >= count * line_;
    for (std::size_t index = 0; index < kGroup; ++index) {
        if (index >= count) {
            rows[index] = rows[count - 1];
            continue;
        }
        const std::span<const Byte> row = nextRow();
        Byte* copy = gathered_.data() + index * line_;
        if (!areTogether) std::ranges::copy(row, copy);
        rows[index] = areTogether ? row.data() : copy;
    }
    sourceLeft_ -= count;
    return rows;
}

// Stays as it is until the next call.
std::span<const Byte> PassedGreys::nextRow() {
    if (rows_.empty()) rows_ = source_->next(kSourceRows);
    const auto row = rows_.first(line_);
    rows_ = rows_.subspan(line_);
    return row;
}

void PassedGreys::interleave(const Rows& rows) {
    for (std::size_t column = 0; column < line_; ++column) {
        pixels_[column] = UInt32{rows[0][column]} | UInt32{rows[1][column]} << 8 |
                          UInt32{rows[2][column]} << 16 | UInt32{rows[3][column]} << 24;
    }
}

}  // namespace tavio::sharp
