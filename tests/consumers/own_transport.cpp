// Prints a photo by a transport of its own, which writes a file: own_transport FOLDER PHOTO JOB.bin
#include <TavioIpadSDK/TavioIpadSDK.h>
#include <fstream>
#include <memory>
#include <string>

namespace {

std::ofstream job;

void write(const char* bytes, std::size_t size) {
    job.write(bytes, static_cast<std::streamsize>(size));
}

}  // namespace

namespace tavio {

bool Open_WF(const std::string& ip) {
    job.open(ip, std::ios::binary);
    return job.is_open();
}
void Close_WF() {
    job.close();
}
void Write_WF(const Text& text) {
    if (text) write(text->data(), text->size());
}
void Write_WF_Data(const Byte* bytes, std::int32_t size) {
    write(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}
Text Read_WF() {
    return std::nullopt;
}
void ClearStatus_WF() {}

bool Open_BT() {
    return false;
}
void Close_BT() {}
void Write_BT(const Text& /*text*/) {}
void Write_BT_Data(const Byte* /*bytes*/, std::int32_t /*size*/) {}
Text Read_BT() {
    return std::nullopt;
}
void ClearStatus_BT() {}

}  // namespace tavio

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const auto photos = std::make_shared<tavio::platform::FolderPhotoLibrary>(argv[1]);
    tavio::platform::setPhotoLibrary(photos);
    if (!tavio::OpenSessionWiFi(argv[3])) return 1;
    for (const bool isDithered : {true, false}) {
        tavio::ChangeConfiguration("<P1>", 300, true, isDithered, tavio::CONCERT, "<LM>");
        tavio::SendFile(photos->urlOf(argv[2]), 10, 20);
    }
    tavio::PrintCut();
    const auto size = job.tellp();
    tavio::CloseSessionWiFi();
    return size > 10000 && job ? 0 : 1;  // more than the commands around the graphics
}
