// Parses requests and writes answers: the only file that knows the HTTP library is http_engine.cpp.
#pragma once

#include <memory>

#include "tools/tavio-printer/web/http_connection.h"
#include "tools/tavio-printer/web/http_messages.h"

namespace tavio::virtual_printer {

class HttpEngine {
  public:
    explicit HttpEngine(HttpHandler handler);
    ~HttpEngine();
    HttpEngine(const HttpEngine&) = delete;
    HttpEngine& operator=(const HttpEngine&) = delete;

    // Reads the request that has arrived, calls the handler, writes the answer. May be called on many
    // threads at once.
    void answer(HttpConnection& connection);

  private:
    class Library;
    std::unique_ptr<Library> library_;
};

}  // namespace tavio::virtual_printer
