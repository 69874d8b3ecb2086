// The benchmarks' inputs: pictures and bitmap files, the same at every run, and a link that
// discards all bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::benchmarks {

// Opaque, upright pictures of any size.
pictures::Picture textPage(std::int32_t width, std::int32_t height);   // paper and lines of letters
pictures::Picture photoLike(std::int32_t width, std::int32_t height);  // all tones, some noise

// One-bit pictures as bitmap files for the encoder. The names describe the bytes of the bands (one
// byte is a column of 8 dots).
enum class OneBit {
    kText,         // textPage(), by threshold
    kPhoto,        // photoLike(), dithered
    kBlack,        // every dot prints
    kStripes,      // black and blank columns in turn: a run for every column
    kComb,         // one black column in 20: a command for every column that prints
    kHalfCommand,  // "<R<R<R...": a command nearly begins everywhere
    kCommands,     // "<RC<RC...", which do not end, in every 64th band: the black band after it is
                   // sent once for each
    kFalseCounts,  // blank, with commands that claim 2147483647 bytes in every second band
    kTooLong,      // "<RC<RC..." everywhere: more than a job may have, so nothing is sent
};

std::vector<OneBit> allOneBitKinds();
std::string nameOf(OneBit kind);  // "text", "photo", "black", "stripes", "comb", "half-command",
                                  // "commands", "false-counts", "too-long"
std::optional<OneBit> oneBitNamed(const std::string& name);

// True if about as many bytes are sent as the picture has, as for all pictures that do not contain
// the printer's commands.
bool isOrdinary(OneBit kind);

// The bitmap file. Width and height are 32 or more, the width a multiple of 4.
Bytes oneBitFile(OneBit kind, std::int32_t width, std::int32_t height);

// A link that counts and discards all bytes.
class DiscardingLink;
std::shared_ptr<DiscardingLink> sendToNobody();
std::uint64_t bytesSent(const DiscardingLink& link);

}  // namespace tavio::benchmarks
