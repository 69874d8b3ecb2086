// Two cores take turns at the strips:
//
//   strip 0   this thread    ==============>
//   strip 1   the other        ============>           each follows the one above it at a distance
//   strip 2   this thread                   ====>      when done with strip 0
//   strip 3   the other                       ==>
#include "TavioIpadSDK/imaging/diffuse_picture.h"

#include <cassert>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/imaging/strip_chain.h"

namespace tavio::imaging {
namespace {

// Smaller pictures take less time than the start of a thread.
constexpr std::size_t kMinPixels = std::size_t{1} << 18;

// Returns false, and does nothing, if no thread can be started.
bool diffuseOnTwoCores(const std::vector<DitherStrip>& strips) {
    std::vector<DitherStrip> own;
    std::vector<DitherStrip> others;
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
    assert(pixels.size() == static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const std::int32_t rows = maxStripRows();
    if (rows == 0 || pixels.size() < kMinPixels || height <= rows ||
        std::thread::hardware_concurrency() < 2) {
        ErrorDiffusion(width).convert(pixels, entries);
        return;
    }
    StripChain chain(width, 2);
    const std::vector<DitherStrip> strips = chain.cut(pixels, entries, rows);
    if (!diffuseOnTwoCores(strips)) diffuseStrips(strips);
}

}  // namespace tavio::imaging
