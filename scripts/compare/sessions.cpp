#include "sessions.h"

#include <TavioIpadSDK/TavioIpadSDK.h>
#include <optional>
#include <string>

#include "documents.h"
#include "record.h"
#include "transport.h"

namespace compare {
namespace {

void result(bool value) {
    record().line(value ? "  -> true" : "  -> false");
}

}  // namespace

void openSession(Random& random) {
    transport().opens = random.chance(85);
    if (random.chance(40)) {
        record().line("OpenSessionBT()");
        result(tavio::OpenSessionBT());
    } else {
        const std::string ip = random.pick({"192.0.2.7", "", "printer.example:9100", "\xFF\n"});
        record().text("OpenSessionWiFi", ip);
        result(tavio::OpenSessionWiFi(ip));
    }
}

void closeSession(Random& random) {
    const bool isOverBluetooth = random.chance(90) ? tavio::Mode == "BT" : tavio::Mode == "WF";
    record().line(isOverBluetooth ? "CloseSessionBT()" : "CloseSessionWiFi()");
    if (isOverBluetooth) {
        tavio::CloseSessionBT();
    } else {
        tavio::CloseSessionWiFi();
    }
}

void readPrinter(Random& random) {
    transport().reply = std::nullopt;
    if (random.chance(70)) transport().reply = random.pick({"ready", "", "\x06", "\xE2\x82\xAC"});
    record().line("ReadPrinter()");
    record().text("  ->", tavio::ReadPrinter());
}

void finish(Random& random) {
    switch (random.between(0, 3)) {
        case 0:
            record().line("PrintNoCut()");
            return tavio::PrintNoCut();
        case 1:
            record().line("ClearMemory()");
            return tavio::ClearMemory();
        default:
            record().line("PrintCut()");
            return tavio::PrintCut();
    }
}

void sendText(Random& random) {
    const Bytes bytes = randomText(random).file;
    tavio::Text text = std::string(bytes.begin(), bytes.end());
    if (random.chance(10)) text = std::nullopt;
    record().text("SendString", text);
    tavio::SendString(text);
}

void sendData(Random& random) {
    Bytes bytes(static_cast<std::size_t>(random.between(0, random.chance(95) ? 100 : 100'000)));
    for (tavio::Byte& byte : bytes) byte = random.byte();
    auto size = static_cast<std::int32_t>(bytes.size());
    if (random.chance(5)) size = random.pick({0, -1, -1000});
    record().line("SendData of size " + std::to_string(size));
    tavio::SendData(bytes.data(), size);
}

}  // namespace compare
