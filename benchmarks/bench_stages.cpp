// Measures the stages of a print with Google Benchmark. Takes its options, and three more:
//
//   --page=WIDTHxHEIGHT  of the page in dots; 5100x6600 if not given
//   --photo=FILE         a photo to decode; none if not given
//   --most-megadots=N    the largest picture of the growth benchmark; 250 if not given
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/stages.h"

namespace {

constexpr std::string_view kPage = "--page=";
constexpr std::string_view kPhoto = "--photo=";
constexpr std::string_view kMaxMegadots = "--most-megadots=";
constexpr std::int32_t kMinSide = 160;  // smaller pictures have no room for their patterns
constexpr std::int32_t kMaxSide = 16384;

struct Options {
    tavio::benchmarks::DotSize page;
    std::string photo;
    std::int32_t maxMegadots = 250;
};

// The number that the text begins with, 0 if none.
std::int32_t number(std::string_view text) {
    return static_cast<std::int32_t>(std::strtol(std::string(text).c_str(), nullptr, 10));
}

// Reads and removes our own options.
Options takeOptions(std::vector<char*>& arguments) {
    Options options;
    std::erase_if(arguments, [&options](std::string_view argument) {
        if (argument.starts_with(kPage)) {
            const std::string_view value = argument.substr(kPage.size());
            const std::size_t times = std::min(value.find('x'), value.size() - 1);
            options.page = {number(value), number(value.substr(times + 1))};
            return true;
        }
        if (argument.starts_with(kPhoto)) {
            options.photo = argument.substr(kPhoto.size());
            return true;
        }
        if (argument.starts_with(kMaxMegadots)) {
            options.maxMegadots = number(argument.substr(kMaxMegadots.size()));
            return true;
        }
        return false;
    });
    return options;
}

bool isSide(std::int32_t side) {
    return side >= kMinSide && side <= kMaxSide;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    const Options options = takeOptions(arguments);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
    if (!isSide(options.page.width) || !isSide(options.page.height) ||
        options.page.width % 4 != 0 || options.maxMegadots < 1 || options.maxMegadots > 250) {
        std::fputs("bench_stages: a page or a number of megadots is out of range\n", stderr);
        return 2;
    }
    const auto stages = std::make_shared<tavio::benchmarks::Stages>(options.page);
    addUnit(*stages);
    if (!options.photo.empty()) addDecode(*stages, options.photo);
    addImaging(*stages);
    addSharp(*stages);
    addSharpPictures(*stages, options.photo);
    addEncoder(*stages);
    tavio::benchmarks::registerGrowth(options.maxMegadots);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
