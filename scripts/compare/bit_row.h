// A row of samples of 1 to 16 bits each, the first in the top bits of the first byte.
#pragma once

#include <cstddef>
#include <utility>

#include "pixels.h"

namespace compare {

class BitRow {
  public:
    // The low `bits` bits of the sample.
    void add(unsigned sample, int bits) {
        for (int bit = bits - 1; bit >= 0; --bit) {
            if (used_ == 0) row_.push_back(0);
            const unsigned value = (sample >> static_cast<unsigned>(bit)) & 1U;
            row_.back() = static_cast<tavio::Byte>(row_.back() | (value << (7U - used_)));
            used_ = (used_ + 1) % 8;
        }
    }

    // Whole bytes; a sample begun before is filled up with 0.
    void addByte(unsigned byte) {
        used_ = 0;
        row_.push_back(static_cast<tavio::Byte>(byte));
    }

    // The row, with bytes of 0 added until its length is a multiple.
    Bytes padded(std::size_t multiple) && {
        row_.resize((row_.size() + multiple - 1) / multiple * multiple);
        return std::move(row_);
    }

  private:
    Bytes row_;
    unsigned used_ = 0;  // bits of the last byte, 0 when it is full
};

}  // namespace compare
