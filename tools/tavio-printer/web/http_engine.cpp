#include "tools/tavio-printer/web/http_engine.h"

#include <cstddef>
#include <httplib.h>
#include <utility>

namespace tavio::virtual_printer {
namespace {

// A connection as the library sees it.
class LibraryStream final : public httplib::Stream {
  public:
    explicit LibraryStream(HttpConnection& connection) : connection_(connection) {}

    bool is_readable() const override { return connection_.hasMore(); }
    bool is_writable() const override { return connection_.isConnected(); }
    ssize_t read(char* to, std::size_t size) override {
        return static_cast<ssize_t>(connection_.read({to, size}));
    }
    ssize_t write(const char* bytes, std::size_t size) override {
        return connection_.write({bytes, size}) ? static_cast<ssize_t>(size) : -1;
    }
    socket_t socket() const override { return connection_.socket(); }

    // The library passes these to handlers, which do not use them here.
    void get_remote_ip_and_port(std::string& ip, int& port) const override {
        ip.clear();
        port = 0;
    }
    void get_local_ip_and_port(std::string& ip, int& port) const override {
        ip.clear();
        port = 0;
    }

  private:
    HttpConnection& connection_;
};

HttpRequest requestFrom(const httplib::Request& from) {
    using Value = std::optional<std::string>;
    return {from.method, from.path,
            [&from](const std::string& name) {
                return from.has_header(name) ? Value(from.get_header_value(name)) : std::nullopt;
            },
            [&from](const std::string& name) {
                return from.has_param(name) ? Value(from.get_param_value(name)) : std::nullopt;
            }};
}

void give(HttpResponse from, httplib::Response& to) {
    if (from.status) to.status = *from.status;
    for (const auto& [name, value] : from.headers) to.set_header(name, value);
    if (!from.nextPart) {
        if (!from.type.empty()) to.set_content(from.content, from.type);
        return;
    }
    to.set_chunked_content_provider(
        from.type, [nextPart = std::move(from.nextPart)](std::size_t, httplib::DataSink& sink) {
            if (!sink.is_writable()) return false;
            const std::optional<std::string> part = nextPart();
            if (!part) sink.done();
            return !part || part->empty() || sink.write(part->data(), part->size());
        });
}

}  // namespace

// The part of the library's server that is used. Its own listener has no limits and waits for idle
// connections at the end.
class HttpEngine::Library final : public httplib::Server {
  public:
    explicit Library(HttpHandler handler) {
        svr_sock_ = 0;  // streams continue while this is not INVALID_SOCKET; it has no other use
        set_pre_routing_handler([handler = std::move(handler)](const auto& from, auto& to) {
            HttpResponse response;
            handler(requestFrom(from), response);
            give(std::move(response), to);
            return HandlerResponse::Handled;
        });
    }

    void answer(HttpConnection& connection) {
        LibraryStream stream(connection);
        bool closed = false;
        process_request(stream, true, closed, nullptr);
    }
};

HttpEngine::HttpEngine(HttpHandler handler)
    : library_(std::make_unique<Library>(std::move(handler))) {}

HttpEngine::~HttpEngine() = default;

void HttpEngine::answer(HttpConnection& connection) {
    library_->answer(connection);
}

}  // namespace tavio::virtual_printer
