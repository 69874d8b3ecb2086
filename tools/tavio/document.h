// Getting a document ready, and finding out whether it can be sent: the library itself keeps silent
// about what is wrong with one.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "TavioIpadSDK/intake/target_size.h"
#include "TavioIpadSDK/platform/url.h"
#include "tools/tavio/console.h"
#include "tools/tavio/extension.h"

namespace tavio::tool {

struct Document {
    URL url;                              // what SendFile or DownloadLogo is to be called with
    std::optional<intake::DotSize> size;  // in print; none for a text

    // To be asked when the library has refused to print it: what is wrong with a picture that only
    // shows when all of it is decoded. "" where nothing is.
    std::function<std::string()> damage = [] { return std::string(); };
};

// Reads and checks the file. A picture is put into a photo library that is registered, because the
// library looks for pictures nowhere else; only its header is looked at, because decoding it takes
// as long as printing it. A page is drawn, once, and a page source installed that hands it out. The
// settings decide the size, and must have been made before.
//
// replaced: where the job's output goes, "" if it replaces no file; must not be the document.
//
// Throws Failure when the document cannot be used.
Document prepareDocument(const std::string& path, Use use, const std::string& replaced,
                         Console& console);

}  // namespace tavio::tool
