#include "benchmarks/stages.h"

namespace tavio::benchmarks {

void Stages::add(const std::string& name, const MakeWork& makeWork) {
    for (const machine::InstructionSet set : machine::availableInstructionSets())
        addFor(set, name, makeWork);
}

void Stages::addOnce(const std::string& name, const MakeWork& makeWork) {
    addFor(machine::instructionSet(), name, makeWork);
}

void Stages::addFor(machine::InstructionSet set, const std::string& name,
                    const MakeWork& makeWork) {
    const auto measure = [self = shared_from_this(), set, name, makeWork](benchmark::State& state) {
        const machine::InstructionSet before = machine::instructionSet();
        machine::useInstructionSet(set);
        self->run(state, name, makeWork);
        machine::useInstructionSet(before);
    };
    benchmark::RegisterBenchmark((name + "/" + nameOf(set)).c_str(), measure)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

void Stages::run(benchmark::State& state, const std::string& name, const MakeWork& makeWork) {
    if (!unit_) unit_ = std::make_unique<UnitCopy>(page_.width, page_.height);
    if (made_ != name) {
        work_ = nullptr;  // frees its memory before the next one takes any
        work_ = makeWork();
        work_(state);  // so that working arrays have their size
        made_ = name;
    }
    const double before = unit_->seconds();
    const double start = secondsNow();
    while (state.KeepRunning()) work_(state);
    const double each = (secondsNow() - start) / static_cast<double>(state.iterations());
    const double after = unit_->seconds();
    state.counters["copies"] = each / ((before + after) / 2);
}

void addUnit(Stages& stages) {
    stages.addOnce("copy", [size = stages.page()] {
        const auto unit = std::make_shared<UnitCopy>(size.width, size.height);
        return [unit](benchmark::State&) { unit->copy(); };
    });
}

}  // namespace tavio::benchmarks
