// print_once DOCUMENT WIDTH HEIGHT dither|threshold OUTPUT: prints a photo or page to a file at
// exactly this size in dots, like an application with a stock of its own. The tool has only the
// library's stocks.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "tavio/links/file_link.h"
#include "tavio/links/transport_operations.h"

namespace {

constexpr std::int32_t kResolution = 600;  // dots per inch

double inches(const char* dots) {
    return std::strtod(dots, nullptr) / kResolution;
}

// A picture is looked up in the photo library, a page is a file.
tavio::URL documentAt(const std::filesystem::path& path) {
    if (path.extension() == ".pdf") return tavio::URL::fromPath(path.string());
    tavio::platform::setPhotoLibrary(std::make_shared<tavio::platform::FolderPhotoLibrary>(
        std::filesystem::absolute(path).parent_path().string()));
    return tavio::platform::FolderPhotoLibrary::urlOf(path.filename().string());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) {
        std::fputs("usage: print_once DOCUMENT WIDTH HEIGHT dither|threshold OUTPUT\n", stderr);
        return 2;
    }
    const auto link = std::make_shared<tavio::links::FileLink>(argv[5]);
    tavio::links::useLink(link);
    tavio::StockWidth = inches(argv[2]);
    tavio::StockHeight = inches(argv[3]);
    tavio::PrinterResolution = kResolution;
    tavio::ImageScaled = true;
    tavio::ImageDithered = std::string(argv[4]) == "dither";
    if (!tavio::OpenSessionWiFi(argv[5])) return 1;
    tavio::SendFile(documentAt(argv[1]), 0, 0);
    tavio::CloseSessionWiFi();
    return link->commit() && link->report().accepted > 0 ? 0 : 1;
}
