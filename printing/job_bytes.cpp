#include "tavio/printing/job_bytes.h"

#include <algorithm>

namespace tavio::printing {

WholeJob::WholeJob(const Job& job, const PrintOptions& options)
    : job_(job), fates_(job.elements().size()) {
    if (!options.progress) return;
    progress_ = [&options, total = total()](std::uint64_t accepted) {
        options.progress(std::min(accepted, total), total);
    };
}

std::optional<std::span<const Byte>> WholeJob::next() noexcept {
    if (isTaken_ || job_.bytes().empty()) return std::nullopt;
    isTaken_ = true;
    return job_.bytes();
}

}  // namespace tavio::printing
