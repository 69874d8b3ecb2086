#include "TavioIpadSDK/helper/server.h"

#include <span>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/helper/descriptor_message.h"
#include "TavioIpadSDK/helper/keeper_protocol.h"
#include "TavioIpadSDK/helper/kept_child.h"
#include "TavioIpadSDK/helper/pipe.h"

namespace tavio::helper {

Server::Server(Descriptor socket) : socket_(std::move(socket)), owner_(::getpid()) {}

// Forks of this process may hold the socket, so closing it would not be enough.
Server::~Server() {
    if (!isInherited()) ::shutdown(socket_.get(), SHUT_RDWR);
}

bool Server::isInherited() const {
    return ::getpid() != owner_;
}

std::optional<Running> Server::ask(const std::vector<std::string>& words,
                                   const Descriptor* input) const {
    SocketPair leash = makeSocketPair();
    Pipe answer = makePipe();
    if (!leash.isOpen() || !answer.isOpen()) return std::nullopt;
    if (!send(kQuestionMessage, words, leash.theirs, answer.writing, input)) return std::nullopt;
    return Running{std::make_unique<KeptChild>(std::move(leash.ours)), std::move(answer.reading)};
}

std::optional<Server::Opened> Server::open(const std::vector<std::string>& words,
                                           const Descriptor& input) const {
    SocketPair leash = makeSocketPair();
    SocketPair channel = makeSocketPair();
    if (!leash.isOpen() || !channel.isOpen()) return std::nullopt;
    if (!send(kInputMessage, words, leash.theirs, channel.theirs, &input)) return std::nullopt;
    return Opened{std::make_unique<KeptChild>(std::move(leash.ours)), std::move(channel.ours)};
}

// The byte that says so stays in the socket, for the next time.
bool Server::wasReady() const {
    char ready = 0;
    return ::recv(socket_.get(), &ready, 1, MSG_PEEK | MSG_DONTWAIT) == 1;
}

bool Server::send(char kind, const std::vector<std::string>& words, const Descriptor& leash,
                  const Descriptor& channel, const Descriptor* input) const {
    std::string message(1, kind);
    for (const std::string& word : words) message.append(word).push_back('\0');
    if (message.size() > kMaxMessageBytes) return false;
    const auto bytes = std::as_bytes(std::span(message));
    return input == nullptr ? sendMessage(socket_, bytes, {&leash, &channel})
                            : sendMessage(socket_, bytes, {&leash, &channel, input});
}

}  // namespace tavio::helper
