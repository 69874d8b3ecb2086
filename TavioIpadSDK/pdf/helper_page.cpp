#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <new>
#include <span>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "TavioIpadSDK/machine/open_regular_file.h"
#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/pdf/helper_process.h"
#include "TavioIpadSDK/platform/pdf_page.h"

namespace tavio::pdf {

namespace {

using platform::PdfLimits;
using platform::PdfOutcome;
using platform::PdfPage;
using platform::PdfPageResult;
using platform::Url;

constexpr const char* kHelperName = "tavio-pdf-page";
constexpr int kLibrariesMissing = 127;  // how the dynamic loader ends a program it cannot load

PdfPageResult refused(PdfOutcome outcome) {
    return {outcome, std::nullopt};
}

bool isProgram(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

// The path of the helper program, "" if there is none. Looks beside the running program, in the
// installed tree that the program is part of, in the library's place of installation, and in the
// build tree.
std::string findHelper() {
    std::error_code error;
    const std::filesystem::path running = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::array<std::filesystem::path, 4> folders = {
        running.parent_path(), running.parent_path() / TAVIO_PDF_HELPER_FROM_PROGRAM,
        TAVIO_PDF_HELPER_INSTALLED, TAVIO_PDF_HELPER_BUILT};
    for (const std::filesystem::path& folder : folders) {
        if (!folder.is_absolute()) continue;
        if (isProgram(folder / kHelperName)) return folder / kHelperName;
    }
    return "";
}

template <typename Number>
std::string shortestText(Number number) {
    std::array<char, 400> digits{};  // the longest double written out has 309 digits
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

// The system limits processor time in whole seconds.
std::chrono::seconds cpuLimit(const PdfLimits& limits) {
    return std::clamp<std::chrono::seconds>(limits.cpu, std::chrono::seconds(1),
                                            std::chrono::hours(24));
}

Deadline deadlineOf(const PdfLimits& limits) {
    using std::chrono::milliseconds;
    return std::chrono::steady_clock::now() +
           std::clamp<milliseconds>(limits.wall, milliseconds(0), std::chrono::hours(24));
}

std::vector<std::string> commandLine(const PdfLimits& limits) {
    return {shortestText(cpuLimit(limits).count()), shortestText(limits.memoryBytes),
            shortestText(limits.mostPointsPerSide)};
}

PdfOutcome outcomeOf(Answer answer) {
    switch (answer) {
        case Answer::kDrawn:
            return PdfOutcome::kDrawn;
        case Answer::kNotPdf:
            return PdfOutcome::kNotPdf;
        case Answer::kEncrypted:
            return PdfOutcome::kEncrypted;
        case Answer::kNoPage:
            return PdfOutcome::kNoPage;
        case Answer::kTooLarge:
            return PdfOutcome::kTooLarge;
        case Answer::kOutOfMemory:
            return PdfOutcome::kMemoryLimit;
    }
    return PdfOutcome::kHelperFailed;
}

// The reason why the answer is not whole.
PdfOutcome outcomeOf(const Ending& ending, const PdfLimits& limits) {
    if (ending.exitStatus == kLibrariesMissing) return PdfOutcome::kHelperMissing;
    const bool overTime = ending.processorTime >= cpuLimit(limits);
    if (ending.signal == SIGXCPU || (ending.signal == SIGKILL && overTime)) {
        return PdfOutcome::kCpuLimit;
    }
    return PdfOutcome::kHelperFailed;
}

// True if every field of a drawn page's header agrees with its crop box.
bool isWellFormed(const AnswerHeader& header, const PdfLimits& limits) {
    if (!std::isfinite(header.x) || !std::isfinite(header.y)) return false;
    if (!sidesAllowed(header.width, header.height, limits.mostPointsPerSide)) return false;
    const PixelBox box = pixelBox(header.x, header.y, header.width, header.height);
    if (!(box.columns >= 1 && box.rows >= 1)) return false;
    if (!(box.columns * box.rows <= static_cast<double>(pictures::kMaxPixels))) return false;
    return header.left == machine::truncateToInt32(box.left) &&
           header.top == machine::truncateToInt32(box.top) &&
           static_cast<double>(header.columns) == box.columns &&
           static_cast<double>(header.rows) == box.rows;
}

PdfPage blankPage(const AnswerHeader& header) {
    PdfPage page;
    page.x = header.x;
    page.y = header.y;
    page.width = header.width;
    page.height = header.height;
    page.left = header.left;
    page.top = header.top;
    page.picture.width = static_cast<std::int32_t>(header.columns);
    page.picture.height = static_cast<std::int32_t>(header.rows);
    page.picture.pixels.resize(std::size_t{header.columns} * header.rows);
    return page;
}

bool isOpaque(const pictures::Picture& picture) {
    return std::ranges::all_of(picture.pixels, [](UInt32 pixel) { return pixel >> 24 == 255; });
}

// Reads one answer from a helper program.
class AnswerReader {
  public:
    AnswerReader(HelperProcess& process, const PdfLimits& limits, Deadline deadline)
        : process_(process), limits_(limits), deadline_(deadline) {}

    PdfPageResult read() {
        AnswerHeader header;
        if (!fill(std::as_writable_bytes(std::span(&header, 1)))) return refused(failure_);
        if (header.magic != kAnswerMagic || header.version != kAnswerVersion) {
            return refused(PdfOutcome::kHelperFailed);
        }
        if (header.outcome != Answer::kDrawn) return refused(outcomeOf(header.outcome));
        if (!isWellFormed(header, limits_)) return refused(PdfOutcome::kHelperFailed);

        PdfPage page = blankPage(header);
        if (!fill(std::as_writable_bytes(std::span(page.picture.pixels)))) return refused(failure_);
        if (!endsHere()) return refused(failure_);
        if (!isOpaque(page.picture)) return refused(PdfOutcome::kHelperFailed);
        return {PdfOutcome::kDrawn, std::move(page)};
    }

  private:
    // Returns false and sets failure_ if the bytes did not come.
    bool fill(std::span<std::byte> into) {
        const HelperProcess::Read read = process_.read(into, deadline_);
        if (read == HelperProcess::Read::kFull) return true;
        failure_ = PdfOutcome::kWallLimit;
        if (read == HelperProcess::Read::kLate) return false;
        const std::optional<Ending> ending = process_.waitForEnd(deadline_);
        if (ending) failure_ = outcomeOf(*ending, limits_);
        return false;
    }

    bool endsHere() {
        std::byte next{};
        const HelperProcess::Read read = process_.read(std::span(&next, 1), deadline_);
        failure_ =
            read == HelperProcess::Read::kLate ? PdfOutcome::kWallLimit : PdfOutcome::kHelperFailed;
        return read == HelperProcess::Read::kEnd;
    }

    HelperProcess& process_;
    const PdfLimits& limits_;
    Deadline deadline_;
    PdfOutcome failure_ = PdfOutcome::kHelperFailed;
};

PdfPageResult drawWithHelper(const Url& url, const PdfLimits& limits, const std::string& helper) {
    const Descriptor document = machine::openRegularFile(url.fileSystemPath());
    if (!document.isOpen()) return refused(PdfOutcome::kUnreadable);

    const std::string program = helper.empty() ? findHelper() : helper;
    if (program.empty()) return refused(PdfOutcome::kHelperMissing);

    const Deadline deadline = deadlineOf(limits);
    std::optional<HelperProcess> process =
        HelperProcess::start(program, commandLine(limits), document);
    if (!process) return refused(PdfOutcome::kHelperMissing);
    return AnswerReader(*process, limits, deadline).read();
}

}  // namespace
}  // namespace tavio::pdf

namespace tavio::platform {

PdfPageResult drawPdfPageWithHelper(const Url& url, const PdfLimits& limits,
                                    const std::string& helper) noexcept {
    try {
        return pdf::drawWithHelper(url, limits, helper);
    } catch (const std::bad_alloc&) {
        return pdf::refused(PdfOutcome::kMemoryLimit);
    } catch (...) {
        return pdf::refused(PdfOutcome::kHelperFailed);
    }
}

}  // namespace tavio::platform
