#include "tavio/links/file_link.h"

namespace tavio::links {

bool FileLink::begin(const std::string& /*address*/) {
    return file_.open() || fail(file_.failure());
}

bool FileLink::take(std::span<const Byte> bytes) {
    return file_.write(bytes) || fail(file_.failure());
}

bool FileLink::commit() {
    if (!failure().empty()) return false;
    return file_.commit() || fail(file_.failure());
}

}  // namespace tavio::links
