// The benchmarks' inputs in grey.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/grey_rows.h"
#include "benchmarks/stages.h"

namespace tavio::benchmarks {

// photoLike() in grey.
std::shared_ptr<const Bytes> photoInGrey(DotSize size);

// Rows that cost nothing.
class ReadyRows : public sharp::GreyRows {
  public:
    ReadyRows(DotSize size, std::shared_ptr<const Bytes> greys);

    std::int32_t width() const override { return size_.width; }
    std::int32_t height() const override { return size_.height; }
    std::span<const Byte> next(std::int32_t maxRows) override;

  private:
    DotSize size_;
    std::shared_ptr<const Bytes> greys_;
    std::span<const Byte> left_;
};

}  // namespace tavio::benchmarks
