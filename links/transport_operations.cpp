#include "tavio/links/transport_operations.h"

#include <utility>

#include "TavioIpadSDK/session/transport.h"
#include "tavio/links/job_links.h"

namespace tavio::links {

namespace {

// Never destroyed: a global object of the application may still print in its destructor.
JobLinks& jobLinks() {
    static JobLinks& links = *new JobLinks;
    return links;
}

std::function<void(const Operation&)>& currentObserver() {
    static auto& observer = *new std::function<void(const Operation&)>;
    return observer;
}

// Transport operations must not throw; a link or an observer may.
template <typename Action>
void withoutThrowing(Action action) noexcept {
    try {
        action();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the link's report has the failure
    }
}

void observe(const Operation& operation) noexcept {
    withoutThrowing([&] {
        if (currentObserver()) currentObserver()(operation);
    });
}

bool open(const char* name, Transport transport, const std::string& address) noexcept {
    bool opened = false;
    withoutThrowing([&] { opened = jobLinks().open(transport, address); });
    observe({name, false, std::nullopt});
    return opened;
}

void close(const char* name, Transport transport) noexcept {
    withoutThrowing([&] { jobLinks().close(transport); });
    observe({name, false, std::nullopt});
}

void writeBytes(Transport transport, std::span<const Byte> bytes) noexcept {
    withoutThrowing([&] {
        Link* link = jobLinks().at(transport);
        if (link != nullptr && !bytes.empty()) link->write(bytes);
    });
}

void writeText(const char* name, Transport transport, const Text& text) noexcept {
    if (text) writeBytes(transport, {reinterpret_cast<const Byte*>(text->data()), text->size()});
    observe({name, true, text ? std::optional(text->size()) : std::nullopt});
}

void writeData(const char* name, Transport transport, const Byte* bytes,
               std::int32_t size) noexcept {
    std::size_t length = bytes != nullptr && size > 0 ? static_cast<std::size_t>(size) : 0;
    writeBytes(transport, {bytes, length});
    observe({name, true, length});
}

Text read(const char* name, Transport transport) noexcept {
    Text reply;
    withoutThrowing([&] {
        Link* link = jobLinks().at(transport);
        if (link != nullptr) reply = link->read();
    });
    observe({name, true, reply ? std::optional(reply->size()) : std::nullopt});
    return reply;
}

// A link's reply is read as a whole, so there is nothing to clear.
void clearStatus(const char* name) noexcept {
    observe({name, false, std::nullopt});
}

}  // namespace

void useLink(std::shared_ptr<Link> link) {
    jobLinks().use(std::move(link));
}

void setBluetoothPrinter(const std::string& address) {
    jobLinks().setBluetoothPrinter(address);
}

void setDeadlines(const Deadlines& deadlines) {
    jobLinks().setDeadlines(deadlines);
}

LinkReport lastReport() {
    return jobLinks().lastReport();
}

void cancelJob() {
    jobLinks().cancelJob();
}

void observeOperations(std::function<void(const Operation&)> observer) {
    currentObserver() = std::move(observer);
}

}  // namespace tavio::links

namespace tavio {

namespace {
constexpr auto kBluetooth = links::Transport::kBluetooth;
constexpr auto kWiFi = links::Transport::kWiFi;
}  // namespace

bool Open_BT() {
    return links::open("Open_BT", kBluetooth, "");
}
void Close_BT() {
    links::close("Close_BT", kBluetooth);
}
void Write_BT(const Text& text) {
    links::writeText("Write_BT", kBluetooth, text);
}
void Write_BT_Data(const Byte* bytes, std::int32_t size) {
    links::writeData("Write_BT_Data", kBluetooth, bytes, size);
}
Text Read_BT() {
    return links::read("Read_BT", kBluetooth);
}
void ClearStatus_BT() {
    links::clearStatus("ClearStatus_BT");
}

bool Open_WF(const std::string& ip) {
    return links::open("Open_WF", kWiFi, ip);
}
void Close_WF() {
    links::close("Close_WF", kWiFi);
}
void Write_WF(const Text& text) {
    links::writeText("Write_WF", kWiFi, text);
}
void Write_WF_Data(const Byte* bytes, std::int32_t size) {
    links::writeData("Write_WF_Data", kWiFi, bytes, size);
}
Text Read_WF() {
    return links::read("Read_WF", kWiFi);
}
void ClearStatus_WF() {
    links::clearStatus("ClearStatus_WF");
}

}  // namespace tavio
