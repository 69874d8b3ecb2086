#include "TavioIpadSDK/session/session.h"

#include "TavioIpadSDK/machine/module_state.h"
#include "TavioIpadSDK/session/transport.h"
#include "TavioIpadSDK/settings/dot_width_table.h"

namespace tavio {

TAVIO_MODULE_TEXT std::string Mode;
constinit bool connectionStatus = false;
constinit std::int32_t connectedBTdevices = 0;
constinit std::int32_t selectedBTindex = 0;
TAVIO_MODULE_TEXT std::string s;

bool OpenSessionBT() {
    InitDotArray();
    connectionStatus = Open_BT();
    Mode = "BT";
    return connectionStatus;
}

void CloseSessionBT() {
    Close_BT();
    Mode.clear();
}

bool OpenSessionWiFi(const std::string& ip) {
    InitDotArray();
    connectionStatus = Open_WF(ip);
    if (connectionStatus) Mode = "WF";
    return connectionStatus;
}

void CloseSessionWiFi() {
    Close_WF();
    Mode.clear();
    connectionStatus = false;
}

void SendString(const Text& string) {
    if (Mode == "WF") {
        Write_WF(string);
    } else if (Mode == "BT") {
        Write_BT(string);
    }
}

void SendData(const Byte* buf, std::int32_t size) {
    if (Mode == "WF") {
        Write_WF_Data(buf, size);
    } else {
        Write_BT_Data(buf, size);
    }
}

Text ReadPrinter() {
    Text stat = "";
    if (Mode == "WF") {
        stat = Read_WF();
        ClearStatus_WF();
    } else if (Mode == "BT") {
        stat = Read_BT();
        ClearStatus_BT();
    }
    return stat;
}

void PrintCut() {
    SendString(CUT);
}

void PrintNoCut() {
    SendString(EJECT);
}

void ClearMemory() {
    SendString(session::kClearMemory);
}

}  // namespace tavio
