// An HTTP server with limits: one listening thread, a fixed number of answering threads, a short
// queue between them. Every connection carries one request.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tools/tavio-printer/web/http_engine.h"
#include "tools/tavio-printer/web/http_listener.h"
#include "tools/tavio-printer/web/http_messages.h"

namespace tavio::virtual_printer {

class HttpServer {
  public:
    // The limit on requests that wait for a thread; further ones get "503 Service Unavailable".
    static constexpr std::size_t kMaxQueued = 128;

    // The handler answers one request; it is called on many threads at once. An answer that is a
    // stream holds its thread until it ends. Throws std::runtime_error, with one sentence, if it cannot listen on the address or start its
    // threads.
    HttpServer(const std::string& address, std::uint16_t port, std::size_t threads,
               HttpHandler handler);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::uint16_t port() const { return listener_.port(); }

    // Closes all connections and waits until all handlers have returned.
    void stop();

  private:
    struct Request {
        machine::Descriptor socket;
        std::string head;
    };

    void startThreads(std::size_t threads);
    void take(machine::Descriptor socket, std::string head);
    void work();
    void answer(Request request);

    HttpListener listener_;
    HttpEngine engine_;

    std::mutex mutex_;  // of all below
    std::condition_variable changed_;
    std::deque<Request> queue_;
    std::set<int> answering_;  // the sockets of the requests being answered
    bool stopping_ = false;

    std::mutex joining_;
    std::vector<std::thread> threads_;
};

}  // namespace tavio::virtual_printer
