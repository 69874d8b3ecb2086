// What the links without a connection have in common: counting, cancelling and remembering.
#pragma once

#include <atomic>
#include <string>

#include "tavio/links/link.h"

namespace tavio::links {

// A kind of link says what becomes of the bytes; everything else is here.
//
//   class CountingLink : public LocalLink {
//     protected:
//       bool take(std::span<const Byte> bytes) override { return true; }
//   };
//
// Whatever take() accepts has arrived, so drain() has nothing to wait for; nothing is acknowledged,
// because nobody is there to do so.
class LocalLink : public Link {
  public:
    bool open(const std::string& address) override;

    // Refused, and not counted, while no job is open, unless takesAlways().
    bool write(std::span<const Byte> bytes) override;
    bool drain() override;
    Text read() override;
    void close() override;
    void cancel() noexcept override { cancelled_.store(true); }
    std::string failure() const override { return report_.failure; }
    LinkReport report() const override { return report_; }
    void observeProgress(ProgressObserver observer) override { observer_ = std::move(observer); }

  protected:
    // Each returns true on success; otherwise it calls fail() with a sentence first. An exception
    // counts as a failure too.
    virtual bool begin(const std::string& address);
    virtual bool take(std::span<const Byte> bytes) = 0;
    virtual void end() {}

    // The answer, where this kind of link has one.
    virtual Text answer() { return std::nullopt; }

    // Whether bytes are taken with no job open, too.
    virtual bool takesAlways() const { return false; }

    // Keeps the first failure of a job; returns false.
    bool fail(const std::string& why);

    bool isOpen() const { return open_; }

  private:
    bool failIfCancelled();
    void keepReply(const std::string& reply);
    void tellProgress() noexcept;

    LinkReport report_;
    ProgressObserver observer_;
    std::atomic<bool> cancelled_{false};
    bool inJob_ = false;  // also after an opening that failed
    bool open_ = false;
};

}  // namespace tavio::links
