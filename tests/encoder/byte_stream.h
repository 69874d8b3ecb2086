// A band stream of any bytes, and a look at the memory it takes.
#pragma once

#include "TavioIpadSDK/encoder/band_stream.h"

namespace tavio::encoder {

class ByteStream : public BandStream {
  public:
    explicit ByteStream(std::span<const Byte> bytes) : BandStream(bytes) {}
    using BandStream::BandStream;
    using BandStream::bytesHeld;
};

}  // namespace tavio::encoder
