// Prints a photo: print_photo PHOTO JOB.bin. The job file holds what a printer would be sent.
#include <TavioIpadSDK/TavioIpadSDK.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <tavio/links/file_link.h>
#include <tavio/links/transport_operations.h>

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const std::filesystem::path photo = std::filesystem::absolute(argv[1]);
    auto link = std::make_shared<tavio::links::FileLink>(argv[2]);
    tavio::links::useLink(link);
    tavio::platform::setPhotoLibrary(
        std::make_shared<tavio::platform::FolderPhotoLibrary>(photo.parent_path()));
    if (tavio::OpenSessionWiFi(argv[2])) {
        tavio::ChangeConfiguration("<P1>", 300, false, true, tavio::CONCERT, "<LM>");
        tavio::SendFile(tavio::platform::FolderPhotoLibrary::urlOf(photo.filename()), 12, 12);
        tavio::PrintCut();
        tavio::CloseSessionWiFi();
    }
    if (link->commit()) return 0;
    std::cerr << link->failure() << '\n';
    return 1;
}
