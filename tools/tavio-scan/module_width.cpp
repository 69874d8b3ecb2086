#include "tools/tavio-scan/module_width.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavio::scan {

namespace {

// How many runs there are of each length.
using Counts = std::vector<std::int64_t>;

// Runs of dots of one colour. The first and the last of a line may be cut off and do not count.
class RunCounter {
  public:
    explicit RunCounter(std::size_t longest) : counts_(longest + 1) {}

    void take(bool isBlack) {
        if (length_ > 0 && isBlack != isBlack_) endRun();
        isBlack_ = isBlack;
        ++length_;
    }

    void endLine() {
        length_ = 0;
        isFirst_ = true;
    }

    const Counts& counts() const { return counts_; }

  private:
    void endRun() {
        if (!isFirst_) ++counts_[length_];
        isFirst_ = false;
        length_ = 0;
    }

    Counts counts_;
    std::size_t length_ = 0;
    bool isBlack_ = false;
    bool isFirst_ = true;
};

Counts runsIn(const Bitmap& bitmap, const Part& part, Along along) {
    const bool isAcross = along == Along::kRows;
    const std::int32_t lines = isAcross ? part.height : part.width;
    const std::int32_t length = isAcross ? part.width : part.height;
    RunCounter counter(static_cast<std::size_t>(length));
    for (std::int32_t line = 0; line < lines; ++line) {
        for (std::int32_t at = 0; at < length; ++at) {
            counter.take(isAcross ? bitmap.isBlack(part.left + at, part.top + line)
                                  : bitmap.isBlack(part.left + line, part.top + at));
        }
        counter.endLine();
    }
    return counter.counts();
}

// Dots that are shared out among modules.
struct Shares {
    double dots = 0;
    double modules = 0;

    void add(std::size_t length, double count, double modulesEach) {
        dots += static_cast<double>(length) * count;
        modules += modulesEach * count;
    }
};

// The mean of the narrowest runs: modules that are no whole number of dots have two neighbouring
// lengths. Runs that are fewer than a tenth are stray dots.
double meanOfNarrowest(const Counts& counts) {
    double all = 0;
    for (const std::int64_t count : counts) all += static_cast<double>(count);
    for (std::size_t length = 1; length + 1 < counts.size(); ++length) {
        const auto count = static_cast<double>(counts[length]);
        const auto next = static_cast<double>(counts[length + 1]);
        if (count == 0 || count + next < all / 10) continue;
        Shares narrow;
        narrow.add(length, count, 1);
        narrow.add(length + 1, next, 1);
        return narrow.dots / narrow.modules;
    }
    return 0;
}

// How far the runs are from whole numbers of modules of this width: a sum of squares.
double misfit(const Counts& counts, double width) {
    double sum = 0;
    for (std::size_t length = 1; length < counts.size(); ++length) {
        const auto dots = static_cast<double>(length);
        const double modules = std::max(std::round(dots / width), 1.0);
        const double error = dots - modules * width;
        sum += error * error * static_cast<double>(counts[length]);
    }
    return sum;
}

// The width about the guess that fits the runs best.
double bestNear(const Counts& counts, double guess) {
    double best = guess;
    for (int percent = 85; percent <= 130; ++percent) {
        const double width = guess * percent / 100;
        if (misfit(counts, width) < misfit(counts, best)) best = width;
    }
    return best;
}

// The dots of all runs that count, shared out among their modules of about this width.
double sharedOut(const Counts& counts, double width, bool isWideAndNarrow) {
    Shares shares;
    for (std::size_t length = 1; length < counts.size(); ++length) {
        const double modules = std::round(static_cast<double>(length) / width);
        const bool doCount = isWideAndNarrow ? modules == 1 : modules >= 1;
        if (doCount) shares.add(length, static_cast<double>(counts[length]), modules);
    }
    return shares.modules > 0 ? shares.dots / shares.modules : 0;
}

}  // namespace

double moduleWidth(const Bitmap& bitmap, const Part& part, Along along, bool isWideAndNarrow) {
    const Counts counts = runsIn(bitmap, part, along);
    const double guess = meanOfNarrowest(counts);
    if (guess == 0) return 0;
    const double width = isWideAndNarrow ? guess : bestNear(counts, guess);
    return sharedOut(counts, width, isWideAndNarrow);
}

}  // namespace tavio::scan
