// A bit for each byte says whether it is blank. Anding the bits with themselves shifted by 1, 2, 4,
// 8 and 3 leaves a bit where 19 blanks in a row begin (with 3 in place of 19):
//
//   blank     0 1 1 0 1 1 1 1 1 0
//   3 ahead   0 0 0 0 1 1 1 0 0 0
//                     ^     ^
//            run begins     last bit: the run ends 3 further on
//
// So where these bits change from 0 to 1 a long run begins, and where they change back it ends 18
// bytes further on. Everything else is skipped 64 bytes at a time, however many short runs there
// are.
#include "TavioIpadSDK/encoder/long_blank_runs.h"

#include <array>
#include <bit>
#include <cassert>

#include "TavioIpadSDK/encoder/mark_blanks.h"

namespace tavio::encoder {
namespace {

// A word of marks and the one after it.
struct Marks {
    std::uint64_t word, next;

    // Keeps a mark if there is another one kBy further on.
    template <int kBy>
    void andAhead() {
        word &= (word >> kBy) | (next << (64 - kBy));
        next &= next >> kBy;  // wrong in its top bits, which do not matter
    }
};

// Marks where a run of kMinSkip blanks begins within the first word.
std::uint64_t longStarts(std::uint64_t blank, std::uint64_t next) {
    static_assert(kMinSkip == 1 + 1 + 2 + 4 + 8 + 3);
    Marks marks{blank, next};
    marks.andAhead<1>();
    marks.andAhead<2>();
    marks.andAhead<4>();
    marks.andAhead<8>();
    marks.andAhead<3>();
    return marks.word;
}

}  // namespace

void LongBlankRuns::markBlock() {
    std::array<std::uint64_t, kBlockWords + 1> blank;
    markBlanks(stream_.read(static_cast<std::size_t>(marked_), 64 * blank.size()), blank);
    bytesMarked_ += 64 * kBlockWords;
    for (std::size_t i = 0; i < kBlockWords; ++i, marked_ += 64) {
        if (blank[i] == 0) {
            assert(isOpen_ == 0);
            continue;
        }
        const std::uint64_t starts = longStarts(blank[i], blank[i + 1]);
        std::uint64_t changes = starts ^ ((starts << 1) | isOpen_);
        isOpen_ = starts >> 63;
        for (; changes != 0; changes &= changes - 1) {
            const int bit = std::countr_zero(changes);
            const std::int64_t at = marked_ + bit;
            if (((starts >> bit) & 1) != 0) {
                runs_.push_back({at, kOpen});
            } else {
                runs_.back().end = at + kMinSkip - 1;
            }
        }
    }
}

// Each run is dropped once, and each of the others is moved at most once for each dropped one.
void LongBlankRuns::dropPassed(std::int64_t start) {
    constexpr std::size_t kManyPassed = 1024;
    while (first_ < runs_.size() && runs_[first_].end <= start) ++first_;
    if (first_ < kManyPassed || 2 * first_ < runs_.size()) return;
    runs_.erase(runs_.begin(), runs_.begin() + static_cast<std::ptrdiff_t>(first_));
    first_ = 0;
}

// Skips bytes before `start` that have not been marked: their runs are not needed.
void LongBlankRuns::beginAt(std::int64_t start) {
    runs_.clear();
    first_ = 0;
    isOpen_ = 0;
    marked_ = start;
}

std::span<const BlankRun> LongBlankRuns::between(std::int64_t start, std::int64_t end) {
    assert(start >= asked_);
    asked_ = start;
    if (marked_ < start) beginAt(start);
    // In the blanks past the end, the last run is open and no other follows.
    const auto size = static_cast<std::int64_t>(stream_.size());
    while (marked_ < end && (marked_ <= size || runs_.empty())) markBlock();
    dropPassed(start);
    return std::span<const BlankRun>(runs_).subspan(first_);
}

}  // namespace tavio::encoder
