#include "tavio/virtual-printer/logo_memory.h"

#include <cassert>
#include <utility>

namespace tavio::virtual_printer {

void LogoMemory::begin(std::int32_t number) {
    abandon();
    if (const auto older = logos_.find(number); older != logos_.end()) {
        used_ -= priceOf(older->second);
        logos_.erase(older);
    }
    storing_ = true;
    fits_ = true;
    number_ = number;
    run_ = {};
    take(kLogoPrice);
}

void LogoMemory::beginRun(Place place, Orientation orientation) {
    assert(storing_);
    run_ = {place, orientation};
}

void LogoMemory::extend(std::span<const Byte> bytes) {
    if (bytes.empty()) return;
    assert(storing_);
    const bool first = run_.count == 0;
    take(bytes.size() + (first ? kRunPrice : 0));
    if (!fits_) return;

    if (first) {
        run_.begin = logo_.bytes.size();
        logo_.runs.push_back(run_);
    }
    logo_.bytes.insert(logo_.bytes.end(), bytes.begin(), bytes.end());
    run_.count += bytes.size();
    logo_.runs.back().count = run_.count;
}

bool LogoMemory::end() {
    const bool kept = storing_ && fits_;
    if (kept) {
        logo_.bytes.shrink_to_fit();
        logo_.runs.shrink_to_fit();
        logos_.insert_or_assign(number_, std::exchange(logo_, {}));
        taken_ = 0;
    }
    abandon();
    return kept;
}

void LogoMemory::abandon() {
    used_ -= std::exchange(taken_, 0);
    storing_ = false;
    logo_ = {};
}

const Logo* LogoMemory::find(std::int32_t number) const {
    const auto logo = logos_.find(number);
    return logo == logos_.end() ? nullptr : &logo->second;
}

void LogoMemory::clear() {
    abandon();
    logos_.clear();
    used_ = 0;
}

std::size_t LogoMemory::priceOf(const Logo& logo) {
    return kLogoPrice + logo.runs.size() * kRunPrice + logo.bytes.size();
}

// Takes memory for the logo being stored. If there is not enough, the logo gives back all of its
// memory and is not kept.
void LogoMemory::take(std::size_t price) {
    if (!fits_) return;
    assert(taken_ <= used_ && used_ <= capacity_);
    if (price <= capacity_ - used_) {
        used_ += price;
        taken_ += price;
        return;
    }
    used_ -= std::exchange(taken_, 0);
    fits_ = false;
    logo_ = {};
}

}  // namespace tavio::virtual_printer
