#include "support/recording_transport.h"

#include <algorithm>
#include <ostream>

#include "TavioIpadSDK/session/transport.h"
#include "support/bitmaps.h"

namespace tavio::test {

std::vector<std::string> RecordingTransport::operations() const {
    std::vector<std::string> names;
    for (const TransportCall& call : calls) names.push_back(call.operation);
    return names;
}

Bytes RecordingTransport::dataSent() const {
    Bytes sent;
    for (const TransportCall& call : calls)
        sent.insert(sent.end(), call.data.begin(), call.data.end());
    return sent;
}

std::string RecordingTransport::textSent() const {
    std::string sent;
    for (const TransportCall& call : calls)
        if (call.operation == "Write_BT" || call.operation == "Write_WF")
            sent += call.text.value_or("");
    return sent;
}

RecordingTransport& transport() {
    static RecordingTransport recording;
    return recording;
}

void PrintTo(const TransportCall& call, std::ostream* out) {
    *out << call.operation << "(";
    if (call.text) *out << '"' << readable(*call.text) << '"';
    if (!call.data.empty()) *out << readable(call.data);
    *out << ")";
}

namespace {

void record(const char* operation, Text text = std::nullopt) {
    transport().calls.push_back({operation, std::move(text), {}});
}

void recordData(const char* operation, const Byte* bytes, std::int32_t size) {
    if (transport().failData) transport().failData();
    const Bytes data = size > 0 ? Bytes(bytes, bytes + size) : Bytes();
    transport().calls.push_back({operation, std::nullopt, data, std::min(size, 0)});
}

}  // namespace
}  // namespace tavio::test

namespace tavio {

using test::record;
using test::recordData;
using test::transport;

bool Open_BT() {
    record("Open_BT");
    return transport().openSucceeds;
}
void Close_BT() {
    record("Close_BT");
}
void Write_BT(const Text& text) {
    record("Write_BT", text);
}
void Write_BT_Data(const Byte* bytes, std::int32_t size) {
    recordData("Write_BT_Data", bytes, size);
}
Text Read_BT() {
    record("Read_BT");
    return transport().reply;
}
void ClearStatus_BT() {
    record("ClearStatus_BT");
}

bool Open_WF(const std::string& ip) {
    record("Open_WF", ip);
    return transport().openSucceeds;
}
void Close_WF() {
    record("Close_WF");
}
void Write_WF(const Text& text) {
    record("Write_WF", text);
}
void Write_WF_Data(const Byte* bytes, std::int32_t size) {
    recordData("Write_WF_Data", bytes, size);
}
Text Read_WF() {
    record("Read_WF");
    return transport().reply;
}
void ClearStatus_WF() {
    record("ClearStatus_WF");
}

}  // namespace tavio
