// Jobs and printers for tests.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "links/virtual_tcp.h"
#include "tavio/links/tcp_link.h"
#include "tavio/printing/job.h"
#include "tavio/printing/printer.h"

namespace tavio::printing::test {

// A job with these elements.
inline Job jobOf(const std::vector<std::string>& elements, const TicketSettings& settings = {}) {
    auto impl = std::make_shared<Job::Impl>();
    impl->settings = settings;
    for (const std::string& text : elements) {
        EncodedElement element;
        element.element = impl->elements.size();
        element.offset = impl->bytes.size();
        element.count = text.size();
        impl->bytes.insert(impl->bytes.end(), text.begin(), text.end());
        impl->elements.push_back(element);
    }
    return Job(std::move(impl));
}

inline std::string textOf(std::span<const Byte> bytes) {
    return {bytes.begin(), bytes.end()};
}

// Links to one far end that the test plays, over virtual calls and a virtual clock.
class VirtualLink : public links::TcpLink {
  public:
    explicit VirtualLink(links::test::VirtualTcp& calls) : TcpLink(links::Deadlines{}, calls) {}
    bool open(const std::string& /*address*/) override { return TcpLink::open("192.0.2.7"); }
};

inline LinkMaker linkTo(links::test::VirtualTcp& calls) {
    return [&calls] { return std::make_shared<VirtualLink>(calls); };
}

// The kinds of the remarks, in order.
inline std::vector<RemarkKind> kindsOf(const std::vector<Remark>& remarks) {
    std::vector<RemarkKind> kinds;
    for (const Remark& remark : remarks) kinds.push_back(remark.kind);
    return kinds;
}

}  // namespace tavio::printing::test
