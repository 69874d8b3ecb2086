#include "links/recording_link.h"

#include <exception>

namespace tavio::links {

bool RecordingLink::open(const std::string& /*address*/) {
    return failure_.empty();
}

bool RecordingLink::write(std::span<const Byte> bytes) {
    if (!failure_.empty()) return false;
    try {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return true;
    } catch (const std::exception&) {
        failure_ = "out of memory";
        return false;
    }
}

}  // namespace tavio::links
