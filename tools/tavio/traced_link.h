// A link that tells its operations: --trace.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tavio/links/link.h"

namespace tavio::tool {

// Calls `tell` after each operation of another link, with its name and the number of bytes, if it
// carries any: "open", "write 38 bytes", "read no text".
class TracedLink : public links::Link {
  public:
    using Teller = std::function<void(const std::string&)>;

    TracedLink(std::shared_ptr<links::Link> link, Teller tell)
        : link_(std::move(link)), tell_(std::move(tell)) {}

    bool open(const std::string& address) override;
    bool write(std::span<const Byte> bytes) override;
    bool drain() override;
    Text read() override;
    void close() override;
    void cancel() noexcept override { link_->cancel(); }
    std::string failure() const override { return link_->failure(); }
    links::LinkReport report() const override { return link_->report(); }
    void observeProgress(links::ProgressObserver observer) override {
        link_->observeProgress(std::move(observer));
    }

  private:
    std::shared_ptr<links::Link> link_;
    Teller tell_;
};

}  // namespace tavio::tool
