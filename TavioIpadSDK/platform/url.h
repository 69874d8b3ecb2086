// URLs, as far as printing needs them.
#pragma once

#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::platform {

// An immutable URL, used through three readings only: its path extension, its file-system path and
// its absolute text.
//
//   Url::fromPath("/srv/my ticket.pdf").absoluteText()               "file:///srv/my%20ticket.pdf"
//   Url::fromText("assets-library://asset/asset.JPG?id=7").pathExtension()            "JPG"
class TAVIO_API Url {
  public:
    // The URL with no text: no path, no extension.
    Url() = default;

    // A URL from its text, which is kept unchanged. Scheme, authority, query and fragment may each
    // be missing; a bare path is a URL too.
    static Url fromText(std::string_view text);

    // The "file://" URL of a path of this machine. A relative path is taken from the current
    // folder. Every byte that may not stand in a URL's path is percent-encoded.
    static Url fromPath(std::string_view path);

    // The part after the last "." of the last component of the percent-decoded path; "" if that
    // component has no ".". Slashes at the end of the path are ignored.
    std::string pathExtension() const;

    // The percent-decoded path. A "%" that is not followed by two hexadecimal digits stands for
    // itself.
    std::string fileSystemPath() const;

    // The whole text that the URL was made from.
    const std::string& absoluteText() const { return text_; }

  private:
    explicit Url(std::string text) : text_(std::move(text)) {}

    std::string text_;
};

}  // namespace tavio::platform

namespace tavio {

using URL = platform::Url;

}  // namespace tavio
