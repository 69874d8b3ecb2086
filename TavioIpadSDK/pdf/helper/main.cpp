// tavio-pdf-page: draws a page of the document on its standard input. pdf/answer.h describes its
// arguments and its answer.
#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <span>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "TavioIpadSDK/machine/write_all.h"
#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/pdf/helper/draw_page.h"
#include "TavioIpadSDK/pdf/helper/draw_rows.h"
#include "TavioIpadSDK/pdf/helper/memory_guard.h"
#include "TavioIpadSDK/pdf/helper/record_page.h"

namespace tavio::pdf_helper {

namespace {

using pdf::Answer;
using pdf::AnswerHeader;

constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

struct Request {
    rlim_t cpuSeconds = 0;
    rlim_t memoryBytes = 0;
    double maxPointsPerSide = 0;
    std::int32_t page = 0;
    std::optional<DotsRequest> dots;
};

template <typename Number>
bool parse(std::string_view text, Number& number) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

// A number from 0 to the last value of the enumeration.
template <typename Enumeration>
bool parse(std::string_view text, Enumeration& value, Enumeration last) {
    int number = 0;
    if (!parse(text, number) || number < 0 || number > static_cast<int>(last)) return false;
    value = static_cast<Enumeration>(number);
    return true;
}

bool parseDots(std::span<char* const> arguments, DotsRequest& dots) {
    return arguments.size() == 5 && parse(arguments[0], dots.resolution) &&
           parse(arguments[1], dots.fit.fit, sharp::Fit::kActual) &&
           parse(arguments[2], dots.fit.turn, sharp::Turn::k270) &&
           parse(arguments[3], dots.fit.boxWidth) && parse(arguments[4], dots.fit.boxHeight) &&
           dots.resolution >= 1 && dots.fit.boxWidth >= 1 && dots.fit.boxHeight >= 1;
}

std::optional<Request> parseArguments(std::span<char* const> arguments) {
    Request request;
    if (arguments.size() < 5 || !parse(arguments[1], request.cpuSeconds) ||
        !parse(arguments[2], request.memoryBytes) ||
        !parse(arguments[3], request.maxPointsPerSide) || !parse(arguments[4], request.page)) {
        return std::nullopt;
    }
    if (arguments.size() > 5 && !parseDots(arguments.subspan(5), request.dots.emplace())) {
        return std::nullopt;
    }
    return request;
}

// Lowers a limit; a stricter one stays. `grace` is the distance from the soft limit to the hard
// one.
bool lower(decltype(RLIMIT_AS) resource, rlim_t wanted, rlim_t grace) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0) return false;
    limit.rlim_cur = std::min(limit.rlim_cur, wanted);
    limit.rlim_max = std::min(limit.rlim_max, std::max(wanted, wanted + grace));
    return ::setrlimit(resource, &limit) == 0;
}

// Nothing of the document may be read before this.
bool applyLimits(const Request& request) {
    return ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && ::prctl(PR_SET_DUMPABLE, 0) == 0 &&
           lower(RLIMIT_CORE, 0, 0) && lower(RLIMIT_CPU, request.cpuSeconds, 1) &&
           lower(RLIMIT_AS, request.memoryBytes, 0);
}

// The file descriptor of the answer. The engine may print to standard output, so that is
// redirected.
int answerDescriptor = -1;
bool answerBegun = false;

bool takeOverStandardOutput() {
    answerDescriptor = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    return answerDescriptor >= 0 && nowhere >= 0 && ::dup2(nowhere, STDOUT_FILENO) >= 0 &&
           ::dup2(nowhere, STDERR_FILENO) >= 0;
}

bool answerWith(std::span<const std::byte> bytes) {
    answerBegun = true;
    return machine::writeAll(answerDescriptor, bytes) == 0;
}

bool writeHeader(const AnswerHeader& header) {
    return answerWith(std::as_bytes(std::span(&header, 1)));
}

void answerOutOfMemory() {
    if (answerBegun) ::_exit(kFailed);
    AnswerHeader header;
    header.outcome = Answer::kOutOfMemory;
    ::_exit(writeHeader(header) ? 0 : kFailed);
}

// Turns a pixel of the surface (alpha, red, green, blue from the top byte down, premultiplied) into
// one of the answer. Transparent parts show the white below.
constexpr std::uint32_t answerPixel(std::uint32_t pixel) {
    const std::uint32_t white = 255 - (pixel >> 24);
    const std::uint32_t red = std::min(((pixel >> 16) & 255) + white, std::uint32_t{255});
    const std::uint32_t green = std::min(((pixel >> 8) & 255) + white, std::uint32_t{255});
    const std::uint32_t blue = std::min((pixel & 255) + white, std::uint32_t{255});
    return red | (green << 8) | (blue << 16) | 0xFF000000U;
}

// Rows are converted in place, so that no more memory is needed.
bool writePixels(const DrawnPage& page) {
    unsigned char* row = cairo_image_surface_get_data(page.surface.get());
    const int stride = cairo_image_surface_get_stride(page.surface.get());
    for (std::uint32_t done = 0; done < page.header.rows; ++done, row += stride) {
        // Rows of this format are aligned for their 32-bit pixels.
        const std::span pixels(reinterpret_cast<std::uint32_t*>(row), page.header.columns);
        std::ranges::transform(pixels, pixels.begin(), answerPixel);
        if (!answerWith(std::as_bytes(pixels))) return false;
    }
    return true;
}

// The document under another number, negative on failure. The engine reads standard input as a
// stream, from where its offset is, but any other file by offsets of its own, so that several
// programs may share one.
int documentDescriptor() {
    return ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

bool answerWithPixels(int document, const Request& request) {
    const DrawnPage page = drawPage(document, request.page, request.maxPointsPerSide);
    if (!writeHeader(page.header)) return false;
    return page.surface == nullptr || writePixels(page);
}

bool answerWithDots(int document, const Request& request) {
    const RecordedPage page =
        recordPage(document, request.page, request.maxPointsPerSide, *request.dots);
    if (!writeHeader(page.header)) return false;
    return page.recording == nullptr ||
           drawRows(page, [](std::span<const Byte> row) { return answerWith(std::as_bytes(row)); });
}

int run(std::span<char* const> arguments) {
    const std::optional<Request> request = parseArguments(arguments);
    if (!request) {
        std::fputs(
            "Usage: tavio-pdf-page CPU-SECONDS MEMORY-BYTES MAX-POINTS PAGE "
            "[RESOLUTION FIT TURN WIDTH HEIGHT] < document\n",
            stderr);
        return kBadUsage;
    }
    if (!takeOverStandardOutput()) return kFailed;
    setOutOfMemoryAction(answerOutOfMemory);
    if (!applyLimits(*request)) return kFailed;

    const int document = documentDescriptor();
    if (document < 0) return kFailed;
    const bool isAnswered =
        request->dots ? answerWithDots(document, *request) : answerWithPixels(document, *request);
    return isAnswered ? 0 : kFailed;
}

}  // namespace

}  // namespace tavio::pdf_helper

int main(int count, char** arguments) {
    return tavio::pdf_helper::run({arguments, static_cast<std::size_t>(count)});
}
