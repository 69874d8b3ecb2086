#include "TavioIpadSDK/pdf/draw_page.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <fcntl.h>
#include <new>
#include <optional>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "TavioIpadSDK/machine/open_regular_file.h"
#include "TavioIpadSDK/machine/write_all.h"
#include "TavioIpadSDK/pdf/find_helper.h"
#include "TavioIpadSDK/pdf/helper_process.h"
#include "TavioIpadSDK/pdf/read_answer.h"

namespace tavio::pdf {

namespace {

using platform::DrawnPdfPage;
using platform::PdfLimits;
using platform::PdfOutcome;

template <typename Number>
std::string shortestText(Number number) {
    std::array<char, 400> digits{};  // the longest double written out has 309 digits
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

// The time limits as the system can hold them: it counts processor time in whole seconds.
PdfLimits clamped(PdfLimits limits) {
    using std::chrono::hours;
    using std::chrono::milliseconds;
    using std::chrono::seconds;
    limits.cpu = std::clamp<seconds>(limits.cpu, seconds(1), hours(24));
    limits.wall = std::clamp<milliseconds>(limits.wall, milliseconds(0), hours(24));
    return limits;
}

std::vector<std::string> commandLine(std::int32_t page, const PdfLimits& limits) {
    return {shortestText(limits.cpu.count()), shortestText(limits.memoryBytes),
            shortestText(limits.mostPointsPerSide), shortestText(page)};
}

DrawnPdfPage drawWithHelper(const Descriptor& document, std::int32_t page, const PdfLimits& wanted,
                            const std::string& helper) {
    if (!document.isOpen()) return refused(PdfOutcome::kUnreadable);
    const std::string program = helper.empty() ? findHelper() : helper;
    if (program.empty()) return refused(PdfOutcome::kHelperMissing);

    const PdfLimits limits = clamped(wanted);
    const Deadline deadline = std::chrono::steady_clock::now() + limits.wall;
    std::optional<HelperProcess> process =
        HelperProcess::start(program, commandLine(page, limits), document);
    if (!process) return refused(PdfOutcome::kHelperMissing);
    return readAnswer(*process, page, limits, deadline);
}

// A file in memory that holds the bytes and cannot be changed any more. On failure none, with errno
// set.
Descriptor sealedFile(std::span<const Byte> bytes) {
    constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    Descriptor file(::memfd_create("document", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file.isOpen()) return file;
    int error = machine::writeAll(file.get(), std::as_bytes(bytes));
    if (error == 0 && ::lseek(file.get(), 0, SEEK_SET) != 0) error = errno;
    if (error == 0 && ::fcntl(file.get(), F_ADD_SEALS, kSeals) != 0) error = errno;
    if (error == 0) return file;
    errno = error;
    return Descriptor();
}

DrawnPdfPage drawWithHelper(std::span<const Byte> document, std::int32_t page,
                            const PdfLimits& limits, const std::string& helper) {
    const Descriptor file = sealedFile(document);
    if (file.isOpen()) return drawWithHelper(file, page, limits, helper);
    // Without a free descriptor no program can be started either.
    const bool noDescriptor = errno == EMFILE || errno == ENFILE;
    return refused(noDescriptor ? PdfOutcome::kHelperMissing : PdfOutcome::kMemoryLimit);
}

// The result of `draw`, which may throw.
template <typename Draw>
DrawnPdfPage withoutException(Draw draw) noexcept {
    try {
        return draw();
    } catch (const std::bad_alloc&) {
        return refused(PdfOutcome::kMemoryLimit);
    } catch (...) {
        return refused(PdfOutcome::kHelperFailed);
    }
}

}  // namespace

DrawnPdfPage drawPage(const Descriptor& document, std::int32_t page, const PdfLimits& limits,
                      const std::string& helper) noexcept {
    return withoutException([&] { return drawWithHelper(document, page, limits, helper); });
}

DrawnPdfPage drawPage(std::span<const Byte> document, std::int32_t page, const PdfLimits& limits,
                      const std::string& helper) noexcept {
    return withoutException([&] { return drawWithHelper(document, page, limits, helper); });
}

}  // namespace tavio::pdf

namespace tavio::platform {

PdfPageResult drawPdfPageWithHelper(const Url& url, const PdfLimits& limits,
                                    const std::string& helper) noexcept {
    const auto draw = [&] {
        const machine::Descriptor document = machine::openRegularFile(url.fileSystemPath());
        return pdf::drawPage(document, 1, limits, helper);
    };
    return pdf::withoutException(draw).result;
}

}  // namespace tavio::platform
