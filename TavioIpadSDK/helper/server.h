// A process that answers questions, each by a child of its own.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "TavioIpadSDK/helper/running.h"

namespace tavio::helper {

// One end of a socket of keeper_protocol.h. Any thread may send at any time.
class Server {
  public:
    explicit Server(Descriptor socket);
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server();  // lets go of the server, which ends, with its children

    // Asks a question. none: the server cannot be reached, is busy, or there is no free descriptor.
    // input: none where the server has it already.
    std::optional<Running> ask(const std::vector<std::string>& words,
                               const Descriptor* input) const;

    // A server for questions about this input. The process is on `leash`.
    struct Opened {
        std::unique_ptr<Leash> leash;
        Descriptor socket;
    };
    std::optional<Opened> open(const std::vector<std::string>& words,
                               const Descriptor& input) const;

    // True if the server has got as far as waiting for questions.
    bool wasReady() const;

    // True if the process that made this object is another one, which forked this one.
    bool isInherited() const;

  private:
    bool send(char kind, const std::vector<std::string>& words, const Descriptor& leash,
              const Descriptor& channel, const Descriptor* input) const;

    Descriptor socket_;
    pid_t owner_;
};

}  // namespace tavio::helper
