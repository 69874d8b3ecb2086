#include "scenarios/real_jobs.h"

#include <functional>
#include <memory>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "tavio/links/recording_link.h"
#include "tavio/links/transport_operations.h"

namespace tavio::scenarios {
namespace {

constexpr std::int32_t kDpi = 200;
constexpr std::int32_t kPrintedLogo = 7;

// The bytes that the library sends when `use` calls it.
Bytes sentBy(std::int32_t stock, const std::function<void()>& use) {
    const auto link = std::make_shared<links::RecordingLink>();
    links::useLink(link);
    platform::setPhotoLibrary(std::make_shared<platform::FolderPhotoLibrary>(TAVIO_EXAMPLES_DIR));
    OpenSessionWiFi("192.0.2.1");
    ChangeConfiguration("<P1>", kDpi, /*scaled*/ true, /*dithered*/ true, stock, "<LM>");
    use();
    CloseSessionWiFi();
    links::useLink(nullptr);
    platform::setPhotoLibrary(nullptr);
    return link->bytes();
}

RealJob jobOf(const std::string& name, std::int32_t stock, const std::function<void()>& use) {
    return {name, sentBy(stock, use), {*virtual_printer::ticketSize(stock, kDpi)}};
}

URL photo(const std::string& name) {
    return platform::FolderPhotoLibrary::urlOf(name);
}

}  // namespace

RealJob photoJob() {
    return jobOf("photo", CREDITCARD, [] {
        SendFile(photo("photo.jpg"), 0, 0);
        PrintCut();
    });
}

RealJob pageJob() {
    return jobOf("page", CREDITCARD, [] {
        SendFile(URL::fromPath(std::string(TAVIO_EXAMPLES_DIR).append("/ticket.pdf")), 0, 0);
        PrintCut();
    });
}

RealJob storedLogoJob() {
    return jobOf("logo", CONCERT, [] {
        ImageScaled = false;
        DownloadLogo(photo("seal.png"), kPrintedLogo);
        PrintLogo(kPrintedLogo, 40, 100);
        PrintLogo(kStoredLogo, 60, 500);
        PrintCut();
    });
}

Bytes storeLogo() {
    return sentBy(CONCERT, [] {
        ImageScaled = false;
        DownloadLogo(photo("seal.png"), kStoredLogo);
    });
}

}  // namespace tavio::scenarios
