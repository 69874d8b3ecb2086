#include "tavio/links/tcp_link.h"

#include "tavio/links/tcp_connection.h"

namespace tavio::links {

TcpLink::TcpLink(const Deadlines& deadlines, SystemCalls& calls)
    : StreamLink(std::make_unique<TcpConnection>(calls), deadlines, calls) {}

}  // namespace tavio::links
