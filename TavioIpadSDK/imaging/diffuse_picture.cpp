// A whole picture on two cores, which take turns at the strips:
//
//   strip 0   this thread    ==============>
//   strip 1   the other        ============>           each a little behind the one above it
//   strip 2   this thread                   ====>      when done with strip 0
//   strip 3   the other                       ==>
#include <system_error>
#include <thread>

#include "TavioIpadSDK/imaging/diffuse_strip.h"
#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/imaging/strip_chain.h"

namespace tavio::imaging {
namespace {

// Smaller pictures are done before a second thread has begun.
constexpr std::size_t kLeastPixels = std::size_t{1} << 18;

// False, with nothing done, if no thread can be had.
bool diffuseOnTwoCores(const std::vector<Strip>& strips) {
    std::vector<Strip> own;
    std::vector<Strip> others;
    for (std::size_t i = 0; i < strips.size(); ++i)
        (i % 2 == 0 ? own : others).push_back(strips[i]);
    try {
        const std::jthread other([&others] { diffuseStrips(others); });
        diffuseStrips(own);
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

}  // namespace

void diffusePicture(std::span<const UInt32> pixels, std::int32_t width, std::int32_t height,
                    std::span<Byte> entries) {
    const std::int32_t rows = rowsOfStrip();
    if (rows == 0 || pixels.size() < kLeastPixels || height <= rows ||
        std::thread::hardware_concurrency() < 2) {
        ErrorDiffusion(width).convert(pixels, entries);
        return;
    }
    StripChain chain(width, 2);
    const std::vector<Strip> strips = chain.cut(pixels, entries, rows);
    if (!diffuseOnTwoCores(strips)) diffuseStrips(strips);
}

}  // namespace tavio::imaging
