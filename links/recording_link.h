// A link that keeps in memory what was sent.
#pragma once

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/links/local_link.h"

namespace tavio::links {

// Collects exactly the bytes that went to the transport, in order, whether or not it was open, and
// answers nothing unless it is told what to answer. Grows from job to job; when memory runs out it
// has failed and keeps the bytes before.
class RecordingLink : public LocalLink {
  public:
    const Bytes& bytes() const { return bytes_; }

    // What read() gives from now on, each time.
    void setReply(Text reply) { reply_ = std::move(reply); }

  protected:
    bool take(std::span<const Byte> bytes) override;
    Text answer() override { return reply_; }
    bool takesAlways() const override { return true; }

  private:
    Bytes bytes_;
    Text reply_;
};

}  // namespace tavio::links
