// Printing a picture of the photo library.
#pragma once

#include "TavioIpadSDK/platform/url.h"

namespace tavio::intake {

// Looks the picture up in the registered photo library (never in the file system) and prints it, or
// stores it if LogoNumber is set, at its size in dots (target_size.h). Always returns false, even
// after it printed.
//
// The lookup runs on the background queue's thread, the print on the thread on which the photo
// library delivers (the same one, for the library's own photo libraries). The calling thread waits
// without limit until the print is done or the lookup has failed. The URL of no asset and a file
// that is no picture end in the encoder's notice. If there is no memory for the picture file, the
// call never returns: an application must not continue without its photo.
bool ImageToBmp(const URL& url);

}  // namespace tavio::intake
