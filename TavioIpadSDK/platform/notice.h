// The modal notice, the library's only message to a person.
#pragma once

#include <functional>
#include <string>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::platform {

// A notice with a title, a message and one dismiss button.
struct TAVIO_API Notice {
    std::string title;    // "Alert"
    std::string message;  // e.g. "Error - BMP file must be monochrome."
    std::string button;   // "OK"
};

// Shows a notice. May be called on the thread that prints a photo (see photo_library.h). It must
// not start a job and should not block: the library does not wait for the button.
using NoticeHandler = std::function<void(const Notice&)>;

// Sets the handler of all notices. An empty function restores the default, which writes "title:
// message" as one line to standard error. Do not call it while a job is running.
//
//   platform::setNoticeHandler([](const platform::Notice& n) { showDialog(n.title, n.message); });
TAVIO_API void setNoticeHandler(NoticeHandler handler);

// Hands the notice to the handler. An exception out of the handler is dropped.
TAVIO_API void showNotice(const Notice& notice) noexcept;

}  // namespace tavio::platform
