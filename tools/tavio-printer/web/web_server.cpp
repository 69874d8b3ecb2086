#include "tools/tavio-printer/web/web_server.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <exception>
#include <optional>
#include <random>
#include <string_view>
#include <utility>

#include "tools/tavio-printer/web/event_stream.h"
#include "tools/tavio-printer/web/http_head.h"
#include "tools/tavio-printer/web/http_server.h"
#include "tools/tavio-printer/web/page_files.h"
#include "tools/tavio-printer/web/ticket_json.h"

namespace tavio::virtual_printer {
namespace {

using Request = HttpRequest;
using Response = HttpResponse;

// In addition to the threads of streams.
constexpr std::size_t kRequestThreads = 8;

constexpr std::size_t kMaxPagesAllowed = 1000;

constexpr const char* kPlain = "text/plain; charset=utf-8";
constexpr const char* kJson = "application/json";

// Headers of all answers: the page loads everything from this server only, and no other site may
// frame it.
constexpr std::array<std::pair<const char*, const char*>, 6> kHeaders = {{
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
     "worker-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"X-Frame-Options", "DENY"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cache-Control", "no-store"},
}};

void setHeader(Response& response, const std::string& name, const std::string& value) {
    response.headers.emplace_back(name, value);
}

void setContent(Response& response, std::string content, std::string_view type) {
    response.content = std::move(content);
    response.type = type;
}

void refuse(Response& response, int status, const std::string& sentence) {
    response.status = status;
    setContent(response, sentence + '\n', kPlain);
}

std::optional<std::uint64_t> number(std::string_view digits) {
    std::uint64_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

bool hasBody(const Request& request) {
    if (request.header("Transfer-Encoding")) return true;
    const std::string length = request.header("Content-Length").value_or("");
    return !length.empty() && length != "0";
}

void sendBytes(Response& response, const std::vector<Byte>& bytes, const char* type) {
    setContent(response, std::string(bytes.begin(), bytes.end()), type);
}

std::string fileName(const StoredTicket& ticket, std::string_view extension) {
    std::string digits = std::to_string(ticket.id);
    constexpr std::size_t kDigits = 6;
    if (digits.size() < kDigits) digits.insert(0, kDigits - digits.size(), '0');
    return std::string("ticket-").append(digits).append(".").append(extension);
}

void sendPicture(const StoredTicket& ticket, const Request& request, Response& response) {
    if (ticket.png.empty()) return refuse(response, 404, "There is no picture of this ticket.");
    sendBytes(response, ticket.png, "image/png");
    const char* kind = request.parameter("download") ? "attachment" : "inline";
    setHeader(response, "Content-Disposition",
              std::string(kind) + "; filename=\"" + fileName(ticket, "png") + '"');
}

void sendJob(const StoredTicket& ticket, Response& response) {
    if (ticket.bytes.empty() && ticket.byteCount != 0) {
        return refuse(response, 404, "The bytes of this ticket were too many to keep.");
    }
    sendBytes(response, ticket.bytes, "application/octet-stream");
    setHeader(response, "Content-Disposition",
              "attachment; filename=\"" + fileName(ticket, "bin") + '"');
}

std::string randomRun() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::random_device random;
    std::string run;
    while (run.size() < 8) run += kDigits[random() % kDigits.size()];
    return run;
}

std::string urlOf(std::string address, std::uint16_t port) {
    if (address == "0.0.0.0" || address.empty()) address = "127.0.0.1";
    if (address == "::") address = "::1";
    if (address.find(':') != std::string::npos) address = '[' + address + ']';
    return "http://" + address + ':' + std::to_string(port) + '/';
}

WebSettings inRange(WebSettings settings) {
    settings.maxPages = std::clamp<std::size_t>(settings.maxPages, 1, kMaxPagesAllowed);
    return settings;
}

}  // namespace

class WebServer::Impl {
  public:
    Impl(const WebSettings& settings, PrinterPanel panel, TicketStore& store)
        : settings_(inRange(settings)),
          panel_(std::move(panel)),
          store_(store),
          source_{store, panel_, randomRun()},
          http_(settings_.address, settings_.port, settings_.maxPages + kRequestThreads,
                [this](const Request& request, Response& response) { answer(request, response); }) {
    }

    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void stop() {
        stopped_ = true;
        http_.stop();
    }
    std::string url() const { return urlOf(settings_.address, http_.port()); }

  private:
    void answer(const Request& request, Response& response);
    void answerChecked(const Request& request, Response& response);
    void get(const Request& request, Response& response);
    void getTicket(const Request& request, Response& response);
    void getEvents(const Request& request, Response& response);
    void loadPaper(const Request& request, Response& response);

    WebSettings settings_;
    PrinterPanel panel_;
    TicketStore& store_;
    EventSource source_;
    std::atomic<std::size_t> pages_{0};  // streams that are open
    std::atomic<bool> stopped_{false};   // ends all streams
    HttpServer http_;                    // last: its threads use everything above
};

void WebServer::Impl::answer(const Request& request, Response& response) {
    for (const auto& [name, value] : kHeaders) setHeader(response, name, value);
    try {
        answerChecked(request, response);
    } catch (const std::exception&) {
        refuse(response, 500, "The printer has no memory for this at the moment.");
    }
}

void WebServer::Impl::answerChecked(const Request& request, Response& response) {
    if (!isHostAllowed(request.header("Host").value_or(""), settings_.address)) {
        return refuse(response, 403, "This page answers to the names of this machine only.");
    }
    if (hasBody(request)) return refuse(response, 413, "No request here has a body.");
    if (request.method == "GET" || request.method == "HEAD") return get(request, response);
    if (request.method == "POST" && request.path == "/paper") return loadPaper(request, response);
    setHeader(response, "Allow", request.path == "/paper" ? "POST" : "GET, HEAD");
    refuse(response, 405, "This cannot be done here.");
}

void WebServer::Impl::get(const Request& request, Response& response) {
    if (request.path == "/events") return getEvents(request, response);
    if (request.path == "/printer.json") {
        return setContent(response, printerJson(panel_), kJson);
    }
    if (request.path.starts_with("/tickets/")) return getTicket(request, response);
    for (const PageFile& file : pageFiles()) {
        if (file.path != request.path) continue;
        return setContent(response, std::string(file.content), file.type);
    }
    refuse(response, 404, "There is no such page.");
}

void WebServer::Impl::getTicket(const Request& request, Response& response) {
    const std::string_view name = std::string_view(request.path).substr(sizeof "/tickets/" - 1);
    const std::size_t dot = std::min(name.find('.'), name.size());
    const std::string_view extension = name.substr(dot);
    const auto id = number(name.substr(0, dot));
    const auto ticket = id ? store_.find(*id) : nullptr;
    if (ticket == nullptr) return refuse(response, 404, "There is no such ticket, or no more.");
    if (extension == ".png") return sendPicture(*ticket, request, response);
    if (extension == ".bin") return sendJob(*ticket, response);
    if (extension != ".json") return refuse(response, 404, "There is no such file of a ticket.");
    const auto line = number(request.parameter("line").value_or(""));
    setContent(response, detailJson(*ticket, line.value_or(0), [this] { return !stopped_; }),
               kJson);
}

void WebServer::Impl::getEvents(const Request& request, Response& response) {
    if (pages_.fetch_add(1) >= settings_.maxPages) {
        --pages_;
        setHeader(response, "Retry-After", "5");
        return refuse(response, 503, "Too many pages are open.");
    }
    // Releases the place when the last copy is destroyed, however the answer ends.
    const std::shared_ptr<void> place(nullptr, [this](void*) { --pages_; });
    std::string lastId = request.header("Last-Event-ID").value_or("");
    if (lastId.empty()) lastId = request.parameter("after").value_or("");
    const auto stream = std::make_shared<EventStream>(source_, lastId);
    response.type = "text/event-stream";
    response.nextPart = [stream, place]() -> std::optional<std::string> {
        if (stream->isOver()) return std::nullopt;
        return stream->next();
    };
}

void WebServer::Impl::loadPaper(const Request& request, Response& response) {
    if (!isOriginAllowed(request.header("Origin").value_or(""),
                         request.header("Sec-Fetch-Site").value_or(""),
                         request.header("Host").value_or(""))) {
        return refuse(response, 403, "Paper is loaded from the printer's own page only.");
    }
    if (panel_.loadPaper) panel_.loadPaper();
    response.status = 204;
}

WebServer::WebServer(const WebSettings& settings, PrinterPanel panel, TicketStore& store)
    : impl_(std::make_unique<Impl>(settings, std::move(panel), store)) {}

WebServer::~WebServer() = default;

void WebServer::stop() {
    impl_->stop();
}

std::string WebServer::url() const {
    return impl_->url();
}

}  // namespace tavio::virtual_printer
