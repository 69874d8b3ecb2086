// Printing a picture of the photo library.
#pragma once

#include "TavioIpadSDK/platform/url.h"

namespace tavio::intake {

// Looks the picture up in the registered photo library (the file system is never read, whatever the
// URL names) and prints it, or stores it when LogoNumber is set, at its size in dots
// (target_size.h). Always returns false, also when it printed: a caller cannot tell.
//
// The lookup runs on the background queue's thread, the whole print on the thread that the photo
// library delivers on (the same, for the ready-made ones), while the calling thread waits without
// limit. It goes on when the print is done or the lookup has failed; the URL of no asset and a file
// that is no picture end in the encoder's notice. Where no memory can be had for the picture file it
// waits for good: an application never goes on printing without the photo that it asked for.
bool ImageToBmp(const URL& url);

}  // namespace tavio::intake
