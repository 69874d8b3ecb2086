// What a print costs: memory over a thousand prints, and the time of each stage for a page.
//
// Times are the shortest of several runs. They are also given in copies: how often the same
// picture could have been copied in memory meanwhile, which says more from one machine to another.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "TavioIpadSDK/imaging/bitmap_file.h"
#include "TavioIpadSDK/imaging/monochrome.h"
#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/platform/stretch.h"
#include "links/local_link.h"
#include "links/transport_operations.h"

namespace {

using tavio::platform::Picture;

// Counts the bytes and throws them away.
class DiscardingLink : public tavio::links::LocalLink {
  public:
    std::uint64_t count() const { return count_; }

  protected:
    bool take(std::span<const tavio::Byte> bytes) override {
        count_ += bytes.size();
        return true;
    }
    bool takesAlways() const override { return true; }

  private:
    std::uint64_t count_ = 0;
};

// Something like a page: paper, lines of letters, and a photo with all its tones.
Picture pageLike(std::int32_t width, std::int32_t height) {
    Picture page{width, height, {}, 1};
    page.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::uint32_t noise = 1;
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            noise = noise * 1664525U + 1013904223U;
            unsigned level = 255;
            if (y * 3 < height) {
                level = static_cast<unsigned>(x * 255LL / width) ^ (noise >> 28U);
            } else if (y / 12 % 2 == 0 && x / 6 % 7 != 0 && (noise >> 30U) != 0) {
                level = 20;
            }
            page.pixels.push_back(tavio::platform::premultipliedPixel(level, level, level, 255));
        }
    }
    return page;
}

void put(tavio::Bytes& file, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.push_back(static_cast<tavio::Byte>(value >> (8 * i)));
}

// The picture as a bitmap file of 24 bits a pixel; its width is a multiple of 4.
tavio::Bytes bitmapFile(const Picture& picture) {
    const auto width = static_cast<std::uint32_t>(picture.width);
    const auto height = static_cast<std::uint32_t>(picture.height);
    tavio::Bytes file{'B', 'M'};
    for (std::uint32_t field : {54 + 3 * width * height, 0U, 54U, 40U, width, height}) {
        put(file, field, 4);
    }
    put(file, 1, 2);
    put(file, 24, 2);
    for (std::uint32_t field : {0U, 3 * width * height, 0U, 0U, 0U, 0U}) put(file, field, 4);
    for (std::uint32_t y = height; y-- > 0;) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const tavio::UInt32 pixel = picture.pixels[std::size_t{y} * width + x];
            for (unsigned shift : {16U, 8U, 0U}) put(file, pixel >> shift & 255U, 1);
        }
    }
    return file;
}

// A line of /proc/self/status, in KiB; 0 where there is none.
long statusKib(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name + ":", 0) == 0) return std::stol(line.substr(name.size() + 1));
    }
    return 0;
}

void measureMemory(const DiscardingLink& link) {
    auto photos = std::make_shared<tavio::platform::InMemoryPhotoLibrary>();
    const tavio::URL photo = photos->add("photo.bmp", bitmapFile(pageLike(640, 480)));
    tavio::platform::setPhotoLibrary(photos);
    tavio::OpenSessionWiFi("");
    long afterSecond = 0;
    for (int print = 1; print <= 1000; ++print) {
        tavio::SendFile(photo, 10, 20);
        if (print == 2) afterSecond = statusKib("VmRSS");
    }
    tavio::CloseSessionWiFi();
    std::printf("memory, printing a photo of 640 x 480 (%llu bytes sent each time)\n",
                static_cast<unsigned long long>(link.count() / 1000));
    std::printf("  after print 2     %8ld KiB\n", afterSecond);
    std::printf("  after print 1000  %8ld KiB\n", statusKib("VmRSS"));
    std::printf("  at the peak       %8ld KiB\n\n", statusKib("VmHWM"));
}

double shortestMs(const std::function<void()>& work) {
    using Clock = std::chrono::steady_clock;
    double shortest = std::numeric_limits<double>::max();
    for (int run = 0; run < 5; ++run) {
        const Clock::time_point start = Clock::now();
        work();
        const std::chrono::duration<double, std::milli> taken = Clock::now() - start;
        shortest = std::min(shortest, taken.count());
    }
    return shortest;
}

void measureStages() {
    constexpr std::int32_t kWidth = 2550;
    constexpr std::int32_t kHeight = 3300;
    const Picture drawn = pageLike(612, 792);  // as a page comes: one pixel a point
    Picture page{kWidth, kHeight, {}, 1};
    std::vector<std::pair<const char*, double>> rows;
    const auto measure = [&rows](const char* stage, const std::function<void()>& work) {
        rows.emplace_back(stage, shortestMs(work));
    };

    measure("stretch from 612 x 792",
            [&] { tavio::platform::stretch(drawn, kWidth, kHeight, page.pixels); });
    std::vector<tavio::UInt32> copy(page.pixels.size());
    const double copyMs = shortestMs(
        [&] { std::memcpy(copy.data(), page.pixels.data(), copy.size() * sizeof(tavio::UInt32)); });
    measure("threshold", [&] { tavio::imaging::ConvertToMonochrome(page); });
    measure("dither", [&] { tavio::imaging::CreateTransformedImage(page); });
    measure("pack", [] { tavio::imaging::createRawMonochromeData(); });
    tavio::imaging::PrintBMP(kWidth, kHeight, page);  // leaves the bitmap file to encode
    const std::shared_ptr<const tavio::Bytes> file = tavio::imaging::myImageData;
    measure("encode", [&] { tavio::encoder::ParseBMP(*file); });
    measure("all of it", [&] { tavio::imaging::PrintBMP(kWidth, kHeight, drawn); });

    std::printf("a page of %d x %d dots, dithered where nothing else is said\n", kWidth, kHeight);
    std::printf("  %-24s %8s %8s\n", "stage", "ms", "copies");
    std::printf("  %-24s %8.2f %8.2f\n", "(copying the picture)", copyMs, 1.0);
    for (const auto& [stage, ms] : rows) {
        std::printf("  %-24s %8.2f %8.2f\n", stage, ms, ms / copyMs);
    }
}

}  // namespace

int main() {
    const auto link = std::make_shared<DiscardingLink>();
    tavio::links::useLink(link);
    measureMemory(*link);
    measureStages();
    return 0;
}
