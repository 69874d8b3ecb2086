// The errors of a command stream and their offsets: a list of limited size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavio::virtual_printer {

struct Problem {
    std::uint64_t offset = 0;  // bytes from the start of the stream
    std::string text;          // one sentence without a full stop, without line breaks
};

// Keeps the first kMaxKept problems and counts the rest.
class ProblemList {
  public:
    static constexpr std::size_t kMaxKept = 1000;

    void add(std::uint64_t offset, std::string text);
    void clear();

    // In the order of the stream.
    const std::vector<Problem>& kept() const { return kept_; }

    // The number of all problems, also those that were not kept.
    std::uint64_t count() const { return count_; }
    bool empty() const { return count_ == 0; }

  private:
    std::vector<Problem> kept_;
    std::uint64_t count_ = 0;
};

}  // namespace tavio::virtual_printer
