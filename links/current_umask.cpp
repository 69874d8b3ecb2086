#include "tavio/links/current_umask.h"

#include <charconv>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace tavio::links {

std::optional<mode_t> currentUmask() {
    constexpr std::string_view kName = "Umask:\t";
    constexpr int kOctal = 8;
    std::ifstream status("/proc/thread-self/status");
    for (std::string line; std::getline(status, line);) {
        if (!line.starts_with(kName)) continue;
        mode_t mask = 0;
        const char* end = line.data() + line.size();
        const auto [stop, error] = std::from_chars(line.data() + kName.size(), end, mask, kOctal);
        if (error == std::errc() && stop == end) return mask;
    }
    return std::nullopt;
}

}  // namespace tavio::links
