#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "TavioIpadSDK/sharp/fit.h"
#include "TavioIpadSDK/sharp/open_picture.h"
#include "TavioIpadSDK/sharp/resampled_grey.h"
#include "benchmarks/grey_inputs.h"
#include "benchmarks/stages.h"

namespace tavio::benchmarks {
namespace {

constexpr std::int32_t kStripRows = 64;

void takeAll(sharp::GreyRows& rows) {
    while (!rows.next(kStripRows).empty()) continue;
}

void addResampling(Stages& stages, const std::string& name, DotSize from, DotSize to) {
    stages.add("sharp, resample, " + name, [from, to] {
        return [values = photoInGrey(from), from, to](benchmark::State&) {
            takeAll(*sharp::resampledGrey(std::make_unique<ReadyRows>(from, values), to.width,
                                          to.height, {0, 0, to.width, to.height}));
        };
    });
}

// The photo at this size, on one thread; at its own size if there is none.
void addDecode(Stages& stages, const std::string& name, const std::string& path, DotSize to) {
    stages.addOnce("sharp, " + name, [path, to]() -> Stages::Work {
        std::ifstream stream(path, std::ios::binary);
        const auto file = std::make_shared<const Bytes>(std::istreambuf_iterator<char>(stream),
                                                        std::istreambuf_iterator<char>());
        const sharp::Fit fit = to.width == 0 ? sharp::Fit::kActual : sharp::Fit::kStretch;
        const sharp::FitRules rules{fit, sharp::Turn::k0, std::max(to.width, 1),
                                    std::max(to.height, 1)};
        return [file, rules](benchmark::State& state) {
            const sharp::SharpPicture picture = sharp::openPicture(file, rules, false);
            if (picture.rows) {
                takeAll(*picture.rows);
            } else {
                state.SkipWithError(picture.why.c_str());
            }
        };
    });
}

}  // namespace

void addSharpPictures(Stages& stages, const std::string& photo) {
    const DotSize page = stages.page();
    const DotSize ticket{page.width * 11 / 34, page.height / 11};
    // As bench_imaging.cpp resamples in colour.
    const DotSize source{page.width * 40 / 51, page.height * 5 / 11};
    addResampling(stages, "photo to page", source, page);
    addResampling(stages, "photo to ticket", source, ticket);
    if (photo.empty()) return;
    addDecode(stages, "decode, photo", photo, {0, 0});
    addDecode(stages, "photo to page", photo, page);
    addDecode(stages, "photo to ticket", photo, ticket);
    addDecode(stages, "photo to a tenth", photo, {page.width * 4 / 51, page.height / 22});
}

}  // namespace tavio::benchmarks
