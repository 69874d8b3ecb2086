#include "TavioIpadSDK/sharp/halftone.h"
#include "benchmarks/grey_inputs.h"
#include "benchmarks/stages.h"

namespace tavio::benchmarks {
namespace {

void addHalftone(Stages& stages, const std::string& name, const sharp::Halftone& halftone,
                 bool mayUseThreads) {
    stages.add(name, [size = stages.page(), halftone, mayUseThreads] {
        const auto greys = photoInGrey(size);
        return [size, halftone, mayUseThreads, greys](benchmark::State&) {
            ReadyRows rows(size, greys);
            benchmark::DoNotOptimize(sharp::halftoned(rows, halftone, mayUseThreads));
        };
    });
}

}  // namespace

void addSharp(Stages& stages) {
    addHalftone(stages, "halftone, one core", {}, false);
    addHalftone(stages, "halftone, two cores", {}, true);
    addHalftone(stages, "halftone, gamma 1.2", {.tone = {.gamma = 1.2}}, false);
    addHalftone(stages, "sharp threshold", {.method = sharp::Method::kThreshold}, false);
}

}  // namespace tavio::benchmarks
