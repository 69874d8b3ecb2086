#include "TavioIpadSDK/intake/logos.h"

#include <string>

#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/intake/image_to_bmp.h"
#include "TavioIpadSDK/intake/pdf_to_bmp.h"
#include "TavioIpadSDK/intake/routes.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/job.h"

namespace tavio {

bool DownloadLogo(const URL& filename, std::int32_t idnum) {
    LogoNumber = std::to_string(idnum);
    switch (intake::routeOf(filename.pathExtension())) {
        case intake::Route::kPage:
            return intake::PdfToBmp(filename);
        case intake::Route::kPhoto:
            return intake::ImageToBmp(filename);
        case intake::Route::kText:  // a text cannot become a logo
        case intake::Route::kNone:
            break;
    }
    return false;
}

bool PrintLogo(std::int32_t idnum, std::int32_t row, std::int32_t column) {
    SendString(encoder::printLogoCommands(idnum, row, column));
    return true;
}

}  // namespace tavio
