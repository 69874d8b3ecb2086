#include "tools/tavio/traced_link.h"

namespace tavio::tool {

namespace {

std::string sized(const char* operation, std::size_t size) {
    return std::string(operation) + " " + std::to_string(size) + " bytes";
}

}  // namespace

bool TracedLink::open(const std::string& address) {
    const bool isGood = link_->open(address);
    tell_("open");
    return isGood;
}

bool TracedLink::write(std::span<const Byte> bytes) {
    const bool isGood = link_->write(bytes);
    tell_(sized("write", bytes.size()));
    return isGood;
}

bool TracedLink::drain() {
    const bool isGood = link_->drain();
    tell_("drain");
    return isGood;
}

Text TracedLink::read() {
    Text reply = link_->read();
    tell_(reply ? sized("read", reply->size()) : "read no text");
    return reply;
}

void TracedLink::close() {
    link_->close();
    tell_("close");
}

}  // namespace tavio::tool
