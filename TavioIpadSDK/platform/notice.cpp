#include "TavioIpadSDK/platform/notice.h"

#include <cstdio>
#include <exception>
#include <utility>

namespace tavio::platform {
namespace {

// Written by setNoticeHandler, read by showNotice; empty means the default. Never destroyed: a global
// object of the application may still print in its destructor.
NoticeHandler& currentHandler() {
    static NoticeHandler& handler = *new NoticeHandler;
    return handler;
}

}  // namespace

void setNoticeHandler(NoticeHandler handler) {
    currentHandler() = std::move(handler);
}

void showNotice(const Notice& notice) noexcept {
    try {
        if (currentHandler()) {
            currentHandler()(notice);
        } else {
            std::fprintf(stderr, "%s: %s\n", notice.title.c_str(), notice.message.c_str());
        }
    } catch (...) {  // NOLINT(bugprone-empty-catch): a notice is best effort
    }
}

}  // namespace tavio::platform
