// Getting a document ready, and finding out beforehand whether it can be sent: the library itself
// keeps silent about what is wrong with one.
#pragma once

#include <optional>
#include <string>

#include "TavioIpadSDK/intake/target_size.h"
#include "TavioIpadSDK/platform/url.h"
#include "tavio/console.h"
#include "tavio/extension.h"

namespace tavio::tool {

struct Document {
    URL url;                              // what SendFile or DownloadLogo is to be called with
    std::optional<intake::DotSize> size;  // in print; none for a text
};

// Reads and checks the file. A picture is put into a photo library that is registered, because the
// library looks for pictures nowhere else; a page is drawn, once, and a page source installed that
// hands it out. The settings decide the size, and must have been made before.
//
// replaced: where the job's output goes, "" if it replaces no file; must not be the document.
//
// Throws Failure when the document cannot be used.
Document prepareDocument(const std::string& path, Use use, const std::string& replaced,
                         Console& console);

}  // namespace tavio::tool
