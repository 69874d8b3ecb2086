#include "transport.h"

#include <cstddef>
#include <string>

#include "record.h"

namespace compare {

Transport& transport() {
    static Transport answers;
    return answers;
}

namespace {

void recordData(const std::string& name, const tavio::Byte* bytes, std::int32_t size) {
    if (size <= 0) return record().line(name + " of size " + std::to_string(size));
    record().bytes(name, {bytes, static_cast<std::size_t>(size)});
}

}  // namespace
}  // namespace compare

namespace tavio {

using compare::record;
using compare::recordData;
using compare::transport;

bool Open_BT() {
    record().line("Open_BT");
    return transport().opens;
}
void Close_BT() {
    record().line("Close_BT");
}
void Write_BT(const Text& text) {
    record().text("Write_BT", text);
}
void Write_BT_Data(const Byte* bytes, std::int32_t size) {
    recordData("Write_BT_Data", bytes, size);
}
Text Read_BT() {
    record().line("Read_BT");
    return transport().reply;
}
void ClearStatus_BT() {
    record().line("ClearStatus_BT");
}

bool Open_WF(const std::string& ip) {
    record().text("Open_WF", ip);
    return transport().opens;
}
void Close_WF() {
    record().line("Close_WF");
}
void Write_WF(const Text& text) {
    record().text("Write_WF", text);
}
void Write_WF_Data(const Byte* bytes, std::int32_t size) {
    recordData("Write_WF_Data", bytes, size);
}
Text Read_WF() {
    record().line("Read_WF");
    return transport().reply;
}
void ClearStatus_WF() {
    record().line("ClearStatus_WF");
}

}  // namespace tavio
