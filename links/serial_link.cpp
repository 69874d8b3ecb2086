#include "tavio/links/serial_link.h"

#include <memory>
#include <utility>

#include "tavio/links/serial_connection.h"

namespace tavio::links {

SerialLink::SerialLink(std::string device, const Deadlines& deadlines, SystemCalls& calls)
    : StreamLink(std::make_unique<SerialConnection>(std::move(device), calls), deadlines, calls) {}

}  // namespace tavio::links
