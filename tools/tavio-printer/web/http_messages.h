// A request to the page's server, and the answer to it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavio::virtual_printer {

// Valid while its handler runs.
struct HttpRequest {
    using Lookup = std::function<std::optional<std::string>(const std::string& name)>;

    std::string method;  // "GET"
    std::string path;    // decoded, without parameters
    Lookup header;       // the first header of the name, in any case of its letters
    Lookup parameter;    // the first parameter of the URL of the name
};

struct HttpResponse {
    std::optional<int> status;  // none: the request succeeded
    std::vector<std::pair<std::string, std::string>> headers;
    std::string content;
    std::string type;  // of the content

    // Instead of content, a stream: each call gives its next part, "" if there is none yet, none at
    // its end. It is destroyed when the stream ends, for whatever reason.
    std::function<std::optional<std::string>()> nextPart;
};

using HttpHandler = std::function<void(const HttpRequest&, HttpResponse&)>;

}  // namespace tavio::virtual_printer
