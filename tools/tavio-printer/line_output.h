// Writing the program's lines of output.
#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>

namespace tavio::virtual_printer {

// Writes whole lines at once, from any thread. Never waits long: if nobody reads them, lines are
// left out.
class LineOutput {
  public:
    // The maximum wait for a line; after it, further lines do not wait until one could be written.
    static constexpr std::chrono::milliseconds kTimeout{1000};

    // Longer lines are cut.
    static constexpr std::size_t kMaxBytes = 2048;

    // The caller keeps the descriptor.
    explicit LineOutput(int descriptor) : descriptor_(descriptor) {}

    // Writes a line, which is given without its end. Control characters are made visible.
    void write(std::string_view line);

  private:
    const int descriptor_;
    std::mutex mutex_;
    bool stuck_ = false;
};

}  // namespace tavio::virtual_printer
