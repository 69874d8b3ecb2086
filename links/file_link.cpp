#include "links/file_link.h"

namespace tavio::links {

bool FileLink::open(const std::string& /*address*/) {
    open_ = file_.open();
    return open_;
}

bool FileLink::write(std::span<const Byte> bytes) {
    return open_ && file_.write(bytes);
}

}  // namespace tavio::links
