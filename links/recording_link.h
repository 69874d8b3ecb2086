// A link that keeps in memory what was sent.
#pragma once

#include "TavioIpadSDK/platform/bytes.h"
#include "links/link.h"

namespace tavio::links {

// Collects exactly the bytes that went to the transport, in order, whether or not it was open, and
// answers nothing unless it is told what to answer. Grows with the job; when memory runs out it has
// failed and keeps the bytes before.
class RecordingLink : public Link {
  public:
    const Bytes& bytes() const { return bytes_; }

    // What read() gives from now on.
    void setReply(Text reply) { reply_ = std::move(reply); }

    bool open(const std::string& address) override;
    bool write(std::span<const Byte> bytes) override;
    Text read() override { return reply_; }
    void close() override {}
    std::string failure() const override { return failure_; }

  private:
    Bytes bytes_;
    Text reply_;
    std::string failure_;
};

}  // namespace tavio::links
