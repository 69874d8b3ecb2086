// Who knows the addresses of names.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

#include "tavio/links/system_calls.h"

namespace tavio::scenarios {

enum class NameAnswer : std::uint8_t { kUnknown, kOneAddress, kTwoAddresses, kNone };

// The one thing here with more than one thread: names are looked up on a thread of the link's.
class NameServer {
  public:
    explicit NameServer(NameAnswer answer) : answer_(answer) {}
    NameServer(const NameServer&) = delete;
    NameServer& operator=(const NameServer&) = delete;

    // Ends all lookups that still wait for an answer.
    ~NameServer();

    // Like links::SystemCalls. With kNone it returns in the destructor.
    int lookUp(std::vector<links::SocketAddress>& addresses);

    // Waits until a lookup has begun.
    void awaitQuestion();

    bool answers() const { return answer_ != NameAnswer::kNone; }

  private:
    NameAnswer answer_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool asked_ = false;
    bool closing_ = false;
    unsigned inside_ = 0;
};

}  // namespace tavio::scenarios
