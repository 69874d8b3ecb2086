// Lines for whoever reads what the program writes.
#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>

namespace tavio::virtual_printer {

// Writes whole lines, from any thread, at once. Never waits long: where nobody reads, lines are
// left out.
class LineOutput {
  public:
    // What a line that has to wait waits at most; further lines do not, until one gets through.
    static constexpr std::chrono::milliseconds kPatience{1000};

    // Longer lines are cut.
    static constexpr std::size_t kMaxBytes = 2048;

    // The descriptor stays the caller's.
    explicit LineOutput(int descriptor) : descriptor_(descriptor) {}

    // The line without its end. Control characters in it are made visible.
    void write(std::string_view line);

  private:
    const int descriptor_;
    std::mutex mutex_;
    bool stuck_ = false;
};

}  // namespace tavio::virtual_printer
