#include "links/transport_operations.h"

#include <utility>

#include "TavioIpadSDK/session/transport.h"

namespace tavio::links {

namespace {

std::shared_ptr<Link>& currentLink() {
    static std::shared_ptr<Link> link;
    return link;
}

std::function<void(const Operation&)>& currentObserver() {
    static std::function<void(const Operation&)> observer;
    return observer;
}

// The library counts on operations that do not throw; a link or an observer may well.
template <typename Action>
void withoutThrowing(Action action) noexcept {
    try {
        action();
    } catch (...) {  // NOLINT(bugprone-empty-catch): a link's failure() is where it is told
    }
}

void observe(const Operation& operation) noexcept {
    withoutThrowing([&] {
        if (currentObserver()) currentObserver()(operation);
    });
}

bool open(const char* name, const std::string& address) noexcept {
    bool opened = false;
    withoutThrowing([&] { opened = currentLink() && currentLink()->open(address); });
    observe({name, false, std::nullopt});
    return opened;
}

void close(const char* name) noexcept {
    withoutThrowing([] {
        if (currentLink()) currentLink()->close();
    });
    observe({name, false, std::nullopt});
}

void writeBytes(std::span<const Byte> bytes) noexcept {
    withoutThrowing([&] {
        if (currentLink() && !bytes.empty()) currentLink()->write(bytes);
    });
}

void writeText(const char* name, const Text& text) noexcept {
    if (text) writeBytes({reinterpret_cast<const Byte*>(text->data()), text->size()});
    observe({name, true, text ? std::optional(text->size()) : std::nullopt});
}

void writeData(const char* name, const Byte* bytes, std::int32_t size) noexcept {
    std::size_t length = bytes != nullptr && size > 0 ? static_cast<std::size_t>(size) : 0;
    writeBytes({bytes, length});
    observe({name, true, length});
}

Text read(const char* name) noexcept {
    Text reply;
    withoutThrowing([&] {
        if (currentLink()) reply = currentLink()->read();
    });
    observe({name, true, reply ? std::optional(reply->size()) : std::nullopt});
    return reply;
}

// A link's reply is whole when it has been read: nothing stays behind that had to be cleared.
void clearStatus(const char* name) noexcept {
    observe({name, false, std::nullopt});
}

}  // namespace

void useLink(std::shared_ptr<Link> link) {
    currentLink() = std::move(link);
}

void observeOperations(std::function<void(const Operation&)> observer) {
    currentObserver() = std::move(observer);
}

}  // namespace tavio::links

namespace tavio {

bool Open_BT() {
    return links::open("Open_BT", "");
}
void Close_BT() {
    links::close("Close_BT");
}
void Write_BT(const Text& text) {
    links::writeText("Write_BT", text);
}
void Write_BT_Data(const Byte* bytes, std::int32_t size) {
    links::writeData("Write_BT_Data", bytes, size);
}
Text Read_BT() {
    return links::read("Read_BT");
}
void ClearStatus_BT() {
    links::clearStatus("ClearStatus_BT");
}

bool Open_WF(const std::string& ip) {
    return links::open("Open_WF", ip);
}
void Close_WF() {
    links::close("Close_WF");
}
void Write_WF(const Text& text) {
    links::writeText("Write_WF", text);
}
void Write_WF_Data(const Byte* bytes, std::int32_t size) {
    links::writeData("Write_WF_Data", bytes, size);
}
Text Read_WF() {
    return links::read("Read_WF");
}
void ClearStatus_WF() {
    links::clearStatus("ClearStatus_WF");
}

}  // namespace tavio
