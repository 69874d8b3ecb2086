// A link that keeps the sent bytes in memory.
#pragma once

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/local_link.h"

namespace tavio::links {

// Collects exactly the bytes that went to the transport, in order, even without an open job, and
// answers only after setReply(). Grows from job to job. If memory runs out it fails and keeps the
// earlier bytes.
class TAVIO_API RecordingLink : public LocalLink {
  public:
    const Bytes& bytes() const { return bytes_; }

    // Sets the result of every following read().
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
