#include <memory>

#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "benchmarks/bench_inputs.h"
#include "benchmarks/stages.h"

namespace tavio::benchmarks {

// The bytes read and written are reported with the time, because the two are in proportion for any
// picture. Hostile pictures are measured with one instruction set.
void addEncoder(Stages& stages) {
    for (const OneBit kind : allOneBitKinds()) {
        const auto makeWork = [kind, size = stages.page()]() -> Stages::Work {
            const auto file =
                std::make_shared<const Bytes>(oneBitFile(kind, size.width, size.height));
            const auto link = sendToNobody();
            return [file, link](benchmark::State& state) {
                const std::uint64_t before = bytesSent(*link);
                encoder::ParseBMP(*file);
                state.counters["read"] = static_cast<double>(file->size());
                state.counters["written"] = static_cast<double>(bytesSent(*link) - before);
            };
        };
        const std::string name = "encode, " + nameOf(kind);
        if (isOrdinary(kind)) {
            stages.add(name, makeWork);
        } else {
            stages.addOnce(name, makeWork);
        }
    }
}

}  // namespace tavio::benchmarks
