#include "tavio/links/rfcomm_link.h"

#include <memory>
#include <utility>

#include "tavio/links/rfcomm_connection.h"

namespace tavio::links {

RfcommLink::RfcommLink(std::string printer, const Deadlines& deadlines, SystemCalls& calls)
    : StreamLink(std::make_unique<RfcommConnection>(std::move(printer), calls), deadlines, calls) {}

}  // namespace tavio::links
