#include "tavio/links/recording_link.h"

namespace tavio::links {

bool RecordingLink::take(std::span<const Byte> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return true;
}

}  // namespace tavio::links
