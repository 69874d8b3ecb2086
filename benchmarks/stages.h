// The benchmarks of bench_stages, by subject, and how they are measured.
#pragma once

#include <benchmark/benchmark.h>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "TavioIpadSDK/machine/instruction_set.h"
#include "benchmarks/unit_copy.h"

namespace tavio::benchmarks {

struct DotSize {
    std::int32_t width = 5100;  // letter size at 600 dots per inch
    std::int32_t height = 6600;
};

// Registers stages with Google Benchmark, each as NAME/SET for every available instruction set. The
// unit is measured just before and after each repetition, so that both see the same load. The
// counter "copies" is the time of one run of the stage in units.
class Stages : public std::enable_shared_from_this<Stages> {
  public:
    using Work = std::function<void(benchmark::State&)>;  // one run of the stage
    using MakeWork = std::function<Work()>;               // with the input that it works on

    explicit Stages(DotSize page) : page_(page) {}

    // The size of the resampled picture.
    DotSize page() const { return page_; }

    void add(const std::string& name, const MakeWork& makeWork);

    // Registers it only with the instruction set in use.
    void addOnce(const std::string& name, const MakeWork& makeWork);

  private:
    void addFor(machine::InstructionSet set, const std::string& name, const MakeWork& makeWork);
    void run(benchmark::State& state, const std::string& name, const MakeWork& makeWork);

    DotSize page_;
    std::unique_ptr<UnitCopy> unit_;
    std::string made_;  // the stage of work_: one input at a time is in memory
    Work work_;
};

void addUnit(Stages& stages);     // the unit itself
void addImaging(Stages& stages);  // dither, threshold, pack, all of it, resample
void addSharp(Stages& stages);    // halftone and threshold of the sharp road
void addDecode(Stages& stages, const std::string& photo);  // of the photo in this file
// Of pictures in grey, and of the photo in this file, if there is one.
void addSharpPictures(Stages& stages, const std::string& photo);
void addEncoder(Stages& stages);  // encode, of ready one-bit pictures

// Pictures that become 1, 2, 4 ... million dots, up to this many millions: "growth/MILLIONS", with
// the counter "dots" for the exact number.
void registerGrowth(std::int32_t maxMegadots);

}  // namespace tavio::benchmarks
