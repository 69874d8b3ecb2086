#include "tavio/virtual-printer/problems.h"

#include <utility>

namespace tavio::virtual_printer {

void ProblemList::add(std::uint64_t offset, std::string text) {
    if (kept_.size() < kMaxKept) kept_.push_back({offset, std::move(text)});
    ++count_;
}

void ProblemList::clear() {
    kept_.clear();
    count_ = 0;
}

}  // namespace tavio::virtual_printer
