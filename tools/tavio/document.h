// Preparing and checking a document: the library does not report what is wrong with one.
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
    URL url;                              // the argument for SendFile or DownloadLogo
    std::optional<intake::DotSize> size;  // in printed dots; none for a text

    // To be called if the library has refused to print it: the damage of a picture that shows only
    // when it is decoded completely; "" if there is none.
    std::function<std::string()> damage = [] { return std::string(); };
};

// Reads and checks the file. A picture is put into a registered photo library, because the library
// looks for pictures nowhere else. Only its header is checked, because decoding takes as long as
// printing. A page is drawn once, and a page source is set that returns it. The size depends on the
// library's settings, which must have been made before.
//
// replaced: the job's output file, "" if it replaces no file; must not be the document.
//
// Throws Failure if the document cannot be used.
Document prepareDocument(const std::string& path, Use use, const std::string& replaced,
                         Console& console);

}  // namespace tavio::tool
