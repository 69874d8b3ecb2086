#include "TavioIpadSDK/intake/send_file.h"

#include <new>
#include <optional>
#include <string>

#include "TavioIpadSDK/intake/image_to_bmp.h"
#include "TavioIpadSDK/intake/pdf_to_bmp.h"
#include "TavioIpadSDK/intake/routes.h"
#include "TavioIpadSDK/platform/bytes.h"
#include "TavioIpadSDK/platform/text.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/job.h"

namespace tavio {

bool SendFile(const URL& filename, std::int32_t row, std::int32_t column) {
    LogoNumber.clear();  // on every route: after a DownloadLogo this is a print again
    originalx = row;
    originaly = column;
    switch (intake::routeOf(filename.pathExtension())) {
        case intake::Route::kText:
            return RWTextFile(filename);
        case intake::Route::kPage:
            return intake::PdfToBmp(filename);
        case intake::Route::kPhoto:
            return intake::ImageToBmp(filename);
        case intake::Route::kNone:
            break;
    }
    return false;
}

bool RWTextFile(const URL& url) {
    const std::string testFile = url.fileSystemPath();
    if (!platform::fileExists(testFile)) return false;
    const std::optional<Bytes> myTextData = platform::readWholeFile(testFile);
    if (!myTextData) return true;
    try {
        SendString(platform::decodeUtf8(*myTextData));
    } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): not sent, as if not readable
    }
    return true;
}

}  // namespace tavio
