#include "TavioIpadSDK/words/helper/fit_block.h"

#include <algorithm>
#include <cmath>

namespace tavio::words_helper {

namespace {

using words::Setting;

class Fitting {
  public:
    Fitting(Text& text, const Setting& setting)
        : text_(text),
          setting_(setting),
          lastStep_(static_cast<int>(
              std::ceil((setting.size - setting.minSize) / words::kSizeStep - 1e-9))) {}

    FittedBlock largest() {
        FittedBlock asked = at(0);
        if (lastStep_ == 0 || isGood(asked, false)) return asked;
        FittedBlock smallest = at(lastStep_);
        if (!smallest.fits) return smallest;
        return at(largestStep(!isGood(smallest, false)));
    }

  private:
    // The size of this step, of which step 0 has the largest and the last one the smallest.
    FittedBlock at(int step) {
        FittedBlock fitted;
        fitted.size = std::max(setting_.size - step * words::kSizeStep, setting_.minSize);
        fitted.block = text_.set(fitted.size);
        fitted.width = fitted.block.bounds.width() + 2 * setting_.inset;
        fitted.height = fitted.block.bounds.height();
        fitted.fits = fitted.width <= setting_.width && fitted.height <= setting_.height;
        return fitted;
    }

    static bool isGood(const FittedBlock& fitted, bool mayBreakWords) {
        return fitted.fits && (mayBreakWords || !fitted.block.hasBrokenWords);
    }

    // The first step that is good, of which the last one is.
    int largestStep(bool mayBreakWords) {
        int bad = -1;
        int good = lastStep_;
        while (good - bad > 1) {
            const int middle = bad + (good - bad) / 2;
            (isGood(at(middle), mayBreakWords) ? good : bad) = middle;
        }
        return good;
    }

    Text& text_;
    const Setting& setting_;
    int lastStep_;
};

}  // namespace

FittedBlock fitBlock(Text& text, const Setting& setting) {
    return Fitting(text, setting).largest();
}

}  // namespace tavio::words_helper
