// Printing on thermal ticket and label printers: everything an application needs.
//
//   #include <TavioIpadSDK/TavioIpadSDK.h>
//
//   auto photos = std::make_shared<tavio::platform::FolderPhotoLibrary>("/srv/photos");
//   tavio::platform::setPhotoLibrary(photos);
//   if (tavio::OpenSessionWiFi("192.0.2.7")) {
//       tavio::ChangeConfiguration("<P1>", 300, false, true, tavio::CINEMA, "<LM>");
//       tavio::SendFile(photos->urlOf("portrait.jpg"), 10, 20);
//       tavio::PrintCut();
//       tavio::CloseSessionWiFi();
//   }
//
// Plain functions over module-wide state, no handles. Calls are synchronous and silent: when one
// returns, its bytes have been handed to the transport. One job at a time; nothing locks. No call
// throws, but for std::bad_alloc when there is no memory left for a short text.
#pragma once

#include "TavioIpadSDK/intake/logos.h"
#include "TavioIpadSDK/intake/send_file.h"
#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/bytes.h"
#include "TavioIpadSDK/platform/notice.h"
#include "TavioIpadSDK/platform/object.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "TavioIpadSDK/platform/photo_library.h"
#include "TavioIpadSDK/platform/picture.h"
#include "TavioIpadSDK/platform/text.h"
#include "TavioIpadSDK/platform/url.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/session/transport.h"
#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/job.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio {

// Bears the library's name and carries nothing: no member, no behaviour.
class TAVIO_API TavioIpadSDK : public platform::Object {};

}  // namespace tavio
