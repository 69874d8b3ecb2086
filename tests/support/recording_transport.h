// The twelve transport operations, which record their calls and arguments.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "TavioIpadSDK/platform/text.h"

namespace tavio::test {

struct TransportCall {
    std::string operation;   // e.g. "Write_WF_Data"
    Text text;               // of Open_WF, Write_BT and Write_WF; no text may be what was passed
    Bytes data;              // of Write_BT_Data and Write_WF_Data
    std::int32_t count = 0;  // of these, the count that was passed where it is not above 0

    bool operator==(const TransportCall&) const = default;
};

struct RecordingTransport {
    std::vector<TransportCall> calls;
    bool openSucceeds = true;        // what Open_BT and Open_WF return
    Text reply = "ready";            // what Read_BT and Read_WF return
    std::function<void()> failData;  // called by the data writes, may throw

    // The names of the operations called, in order.
    std::vector<std::string> operations() const;
    // The bytes of all data writes, one after the other.
    Bytes dataSent() const;
    // The texts of all text writes that had one, one after the other.
    std::string textSent() const;
};

// The recording that the twelve operations of this program write to.
RecordingTransport& transport();

// Prints calls readably in failing tests.
void PrintTo(const TransportCall& call, std::ostream* out);

}  // namespace tavio::test
