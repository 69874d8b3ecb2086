// The bytes that are sent over one link, with the elements that they belong to.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/printing/job.h"
#include "tavio/printing/print_options.h"
#include "tavio/printing/print_result.h"

namespace tavio::printing {

// One piece after the other.
class JobBytes {
  public:
    JobBytes() = default;
    JobBytes(const JobBytes&) = delete;
    JobBytes& operator=(const JobBytes&) = delete;
    virtual ~JobBytes() = default;

    // The next piece, valid until the next call; none after the last. It is called first before the
    // link is opened.
    virtual std::optional<std::span<const Byte>> next() noexcept = 0;

    // Of the pieces so far.
    virtual std::uint64_t total() const noexcept = 0;
    virtual std::span<const EncodedElement> elements() const noexcept = 0;

    // As many as there are elements. Handed over when all is sent.
    virtual std::vector<ElementFate>& fates() noexcept = 0;

    // Told while bytes are sent, how many were accepted so far; empty if nobody wants to know.
    virtual const std::function<void(std::uint64_t accepted)>& progress() const noexcept = 0;
};

// Those of a job, as one piece.
class WholeJob : public JobBytes {
  public:
    // The job and the options must live as long as this. Throws std::bad_alloc.
    WholeJob(const Job& job, const PrintOptions& options);

    std::optional<std::span<const Byte>> next() noexcept override;
    std::uint64_t total() const noexcept override { return job_.bytes().size(); }
    std::span<const EncodedElement> elements() const noexcept override { return job_.elements(); }
    std::vector<ElementFate>& fates() noexcept override { return fates_; }
    const std::function<void(std::uint64_t)>& progress() const noexcept override {
        return progress_;
    }

  private:
    const Job& job_;
    bool isTaken_ = false;
    std::vector<ElementFate> fates_;
    std::function<void(std::uint64_t)> progress_;
};

}  // namespace tavio::printing
