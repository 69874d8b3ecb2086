// Prints a photo into a job file and looks at what came out: consumer FOLDER PHOTO JOB.bin
#include <TavioIpadSDK/TavioIpadSDK.h>
#include <filesystem>
#include <iostream>
#include <links/file_link.h>
#include <links/transport_operations.h>
#include <memory>

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    auto link = std::make_shared<tavio::links::FileLink>(argv[3]);
    auto photos = std::make_shared<tavio::platform::FolderPhotoLibrary>(argv[1]);
    tavio::links::useLink(link);
    tavio::platform::setPhotoLibrary(photos);
    if (!tavio::OpenSessionWiFi("")) return 1;
    tavio::SendFile(photos->urlOf(argv[2]), 10, 20);
    tavio::CloseSessionWiFi();
    if (!link->commit()) return 1;
    const auto size = std::filesystem::file_size(argv[3]);
    std::cout << "the job has " << size << " bytes\n";
    return size > 1000 ? 0 : 1;  // more than the commands around the graphics
}
