#include "scenarios/event_queue.h"

#include <array>
#include <cstdio>

namespace tavio::scenarios {

std::string inMilliseconds(Duration duration) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.3f ms",
                  std::chrono::duration<double, std::milli>(duration).count());
    return text.data();
}

void EventQueue::trace(const std::string& line) {
    if (!keepsTrace_ || lines_.size() > kMaxLines) return;
    if (lines_.size() == kMaxLines) {
        lines_.emplace_back("(the rest is not shown)");
        return;
    }
    lines_.push_back(inMilliseconds(elapsed()).append("  ").append(line));
}

}  // namespace tavio::scenarios
