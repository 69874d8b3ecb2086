#include "tools/tavio-printer/web/http_server.h"

#include <csignal>
#include <exception>
#include <string_view>
#include <sys/socket.h>
#include <utility>

#include "tools/tavio-printer/web/http_head.h"

namespace tavio::virtual_printer {
namespace {

constexpr std::string_view kBusy =
    "HTTP/1.1 503 Service Unavailable\r\n"
    "Retry-After: 2\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";

// Threads that are started while it exists get no signals: the program's own threads handle those.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

  private:
    sigset_t before_{};
};

}  // namespace

HttpServer::HttpServer(const std::string& address, std::uint16_t port, std::size_t threads,
                       HttpHandler handler)
    : listener_(address, port), engine_(std::move(handler)) {
    try {
        startThreads(threads);
    } catch (...) {
        stop();
        throw;
    }
}

HttpServer::~HttpServer() {
    stop();
}

void HttpServer::startThreads(std::size_t threads) {
    const SignalsBlocked blocked;
    threads_.reserve(threads + 1);
    for (std::size_t count = 0; count < threads; ++count) {
        threads_.emplace_back([this] { work(); });
    }
    threads_.emplace_back([this] {
        listener_.run([this](machine::Descriptor socket, std::string head) {
            take(std::move(socket), std::move(head));
        });
    });
}

void HttpServer::take(machine::Descriptor socket, std::string head) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (stopping_) return;
        if (queue_.size() < kMaxQueued) {
            queue_.push_back({std::move(socket), std::move(head)});
            changed_.notify_one();
            return;
        }
    }
    static_cast<void>(::send(socket.get(), kBusy.data(), kBusy.size(), MSG_NOSIGNAL));
}

void HttpServer::work() {
    while (true) {
        Request request;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            changed_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
            if (stopping_) return;
            request = std::move(queue_.front());
            queue_.pop_front();
            answering_.insert(request.socket.get());
        }
        answer(std::move(request));
    }
}

void HttpServer::answer(Request request) {
    const int socket = request.socket.get();
    HttpConnection connection(std::move(request.socket), withoutCostlyHeaders(request.head));
    try {
        engine_.answer(connection);
        connection.finish();
    } catch (const std::exception&) {
        // No memory for the answer: the browser gets none.
    }
    // Before the connection closes its descriptor: another connection may get the number.
    const std::lock_guard<std::mutex> lock(mutex_);
    answering_.erase(socket);
}

void HttpServer::stop() {
    const std::lock_guard<std::mutex> onlyOne(joining_);
    listener_.stop();
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
        queue_.clear();
        for (const int socket : answering_) ::shutdown(socket, SHUT_RDWR);
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) {
        if (thread.joinable()) thread.join();
    }
}

}  // namespace tavio::virtual_printer
