#include "tavio/printing/printer_address.h"

#include <array>
#include <optional>
#include <utility>

#include "tavio/links/rfcomm_address.h"
#include "tavio/links/rfcomm_link.h"
#include "tavio/links/serial_address.h"
#include "tavio/links/serial_link.h"
#include "tavio/links/tcp_address.h"
#include "tavio/links/tcp_link.h"

namespace tavio::printing {

namespace {

// Opens the connection to one printer, whatever address open() is given.
class LinkToOnePrinter : public links::TcpLink {
  public:
    LinkToOnePrinter(std::string address, const links::Deadlines& deadlines)
        : TcpLink(deadlines), address_(std::move(address)) {}

    bool open(const std::string& /*address*/) override { return TcpLink::open(address_); }

  private:
    std::string address_;
};

// A function that makes links of this kind, from the address in its written form.
template <typename NewLink>
LinkMaker maker(std::string address, const links::Deadlines& deadlines) {
    return [address = std::move(address), deadlines] {
        return std::make_shared<NewLink>(address, deadlines);
    };
}

// None if the address is none.
template <typename NewLink, typename Address>
LinkMaker makerFor(const std::optional<Address>& address, const links::Deadlines& deadlines) {
    if (!address) return {};
    return maker<NewLink>(links::toText(*address), deadlines);
}

LinkMaker tcpMaker(std::string_view rest, const links::Deadlines& deadlines) {
    return makerFor<LinkToOnePrinter>(links::parseTcpAddress(rest), deadlines);
}

LinkMaker bluetoothMaker(std::string_view rest, const links::Deadlines& deadlines) {
    return makerFor<links::RfcommLink>(links::parseRfcommAddress(rest), deadlines);
}

LinkMaker serialMaker(std::string_view rest, const links::Deadlines& deadlines) {
    return makerFor<links::SerialLink>(links::parseSerialAddress(rest), deadlines);
}

struct Scheme {
    std::string_view text;  // that the address begins with
    LinkMaker (*makerFor)(std::string_view rest, const links::Deadlines& deadlines);
    const char* form;  // to give
};

constexpr std::array<Scheme, 3> kSchemes{{
    {"tcp://", tcpMaker,
     "tcp://HOST or tcp://HOST:PORT with a port from 1 to 65535, an IPv6 address in brackets"},
    {"bt://", bluetoothMaker,
     "bt://AA:BB:CC:DD:EE:FF or bt://AA:BB:CC:DD:EE:FF/CHANNEL with a channel from 1 to 30"},
    {"tty:", serialMaker,
     "tty:DEVICE or tty:DEVICE?baud=RATE with one of the usual rates from 1200 to 4000000"},
}};

const Scheme* schemeOf(std::string_view text) {
    for (const Scheme& scheme : kSchemes) {
        if (text.starts_with(scheme.text)) return &scheme;
    }
    return nullptr;
}

}  // namespace

LinkMaker linkTo(std::string_view address, const links::Deadlines& deadlines) {
    const Scheme* scheme = schemeOf(address);
    if (scheme == nullptr) return {};
    return scheme->makerFor(address.substr(scheme->text.size()), deadlines);
}

bool isPrinterAddress(std::string_view text) noexcept try {
    return linkTo(text) != nullptr;
} catch (const std::exception&) {
    return false;
}

std::string addressForm(std::string_view text) {
    const Scheme* scheme = schemeOf(text);
    return scheme != nullptr ? scheme->form : "";
}

std::string whyNoPrinterAddress(std::string_view text) {
    const std::string form = addressForm(text);
    std::string sentence = "\"";
    sentence.append(text).append("\" is no address of a printer: give ");
    return sentence.append(form.empty() ? "tcp://HOST, bt://ADDRESS or tty:DEVICE" : form);
}

}  // namespace tavio::printing
