// The result of a job, from the report of its link.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "tavio/links/link_report.h"
#include "tavio/printing/job.h"
#include "tavio/printing/print_result.h"

namespace tavio::printing {

// Adds the remark; without its sentence, or not at all, if there is no memory for it.
void addRemark(std::vector<Remark>& remarks, RemarkKind kind, std::string_view sentence) noexcept;

// The remark on why the link failed; none if it did not. `isCancelled`: a failure without a kind of
// its own is the cancelling.
void addFailure(std::vector<Remark>& remarks, const links::LinkReport& report,
                bool isCancelled) noexcept;

// The remark on an end that was not clean; none if it was.
void addLinkRemark(std::vector<Remark>& remarks, const links::LinkReport& report) noexcept;

// Nothing was sent, for this reason.
PrintResult unsent(const Job& job, RemarkKind kind, std::string_view sentence) noexcept;

// Sets outcome, counts and the elements' fates, of which there must be as many as elements. Takes no
// memory, so it never fails.
void setCounts(PrintResult& result, const links::LinkReport& report,
               std::span<const EncodedElement> elements) noexcept;

}  // namespace tavio::printing
