// Prints a photo into a job file and onto a preview, checks both, and fails to reach a printer that
// does not exist: consumer FOLDER PHOTO JOB.bin
#include <TavioIpadSDK/TavioIpadSDK.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <tavio/links/file_link.h>
#include <tavio/links/transport_operations.h>
#include <tavio/preview/preview_link.h>

using namespace tavio;

namespace {

bool printTo(const std::shared_ptr<links::Link>& link, const URL& photo) {
    links::useLink(link);
    if (!OpenSessionWiFi("")) return false;
    SendFile(photo, 10, 20);
    CloseSessionWiFi();
    return link->failure().empty();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const std::string job = argv[3];
    auto photos = std::make_shared<platform::FolderPhotoLibrary>(argv[1]);
    platform::setPhotoLibrary(photos);
    const URL photo = photos->urlOf(argv[2]);

    auto file = std::make_shared<links::FileLink>(job);
    if (!printTo(file, photo) || !file->commit()) return 1;
    virtual_printer::PrinterSettings ticket;
    ticket.size = {.rows = 600, .columns = 1650, .dpi = 300};
    auto preview = std::make_shared<links::PreviewLink>(job + ".png", ticket);
    if (!printTo(preview, photo) || !preview->commit()) return 1;
    const auto size = std::filesystem::file_size(job);
    std::cout << "the job has " << size << " bytes, its picture "
              << std::filesystem::file_size(job + ".png") << '\n';

    links::useLink(nullptr);
    if (OpenSessionWiFi("127.0.0.1:1")) return 1;
    std::cout << links::lastReport().failure << ": " << links::describe(links::lastReport())
              << '\n';
    return size > 1000 ? 0 : 1;  // more than the commands around the graphics
}
