// The common part of links without a connection: counting, cancelling and reporting.
#pragma once

#include <atomic>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/link.h"

namespace tavio::links {

// A derived class takes the bytes; everything else is here.
//
//   class CountingLink : public LocalLink {
//     protected:
//       bool take(std::span<const Byte> bytes) override { return true; }
//   };
//
// All bytes that take() accepts have arrived, so drain() does not wait. No byte is acknowledged,
// because there is no far end.
class TAVIO_API LocalLink : public Link {
  public:
    bool open(const std::string& address) override;

    // Without an open job the bytes are refused and not counted, unless takesAlways().
    bool write(std::span<const Byte> bytes) override;
    bool drain() override;
    Text read() override;
    void close() override;
    void cancel() noexcept override { cancelled_.store(true); }
    std::string failure() const override { return report_.failure; }
    LinkReport report() const override { return report_; }
    void observeProgress(ProgressObserver observer) override { observer_ = std::move(observer); }

  protected:
    // Each returns true on success; on failure it calls fail() with a sentence. An exception counts
    // as a failure too.
    virtual bool begin(const std::string& address);
    virtual bool take(std::span<const Byte> bytes) = 0;
    virtual void end() {}

    // The answer, if this kind of link has one.
    virtual Text answer() { return std::nullopt; }

    // True if bytes are taken even without an open job.
    virtual bool takesAlways() const { return false; }

    // Keeps the first failure of a job; returns false.
    bool fail(const std::string& why);
    bool fail(const Failure& why);

    bool isOpen() const { return open_; }

  private:
    bool failIfCancelled();
    void keepReply(const std::string& reply);
    void reportProgress() noexcept;

    LinkReport report_;
    ProgressObserver observer_;
    std::atomic<bool> cancelled_{false};
    bool inJob_ = false;  // also after an opening that failed
    bool open_ = false;
};

}  // namespace tavio::links
