// tavio-pdf-page: draws a page of the document on its standard input. pdf/answer.h describes its
// arguments and its answer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "TavioIpadSDK/helper/program/answer.h"
#include "TavioIpadSDK/helper/program/parse_number.h"
#include "TavioIpadSDK/helper/program/run.h"
#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/pdf/helper/built_in_page.h"
#include "TavioIpadSDK/pdf/helper/draw_page.h"
#include "TavioIpadSDK/pdf/helper/draw_rows.h"
#include "TavioIpadSDK/pdf/helper/record_page.h"

namespace tavio::pdf_helper {

namespace {

using helper_program::answerWith;
using helper_program::parse;
using helper_program::Task;
using helper_program::TaskMaker;
using pdf::AnswerHeader;
using Words = std::span<const std::string_view>;

struct Request {
    double maxPointsPerSide = 0;
    std::int32_t page = 0;
    std::optional<DotsRequest> dots;
};

bool parseDots(Words words, DotsRequest& dots) {
    return words.size() == 5 && parse(words[0], dots.resolution) &&
           parse(words[1], dots.fit.fit, sharp::Fit::kActual) &&
           parse(words[2], dots.fit.turn, sharp::Turn::k270) &&
           parse(words[3], dots.fit.boxWidth) && parse(words[4], dots.fit.boxHeight) &&
           dots.resolution >= 1 && dots.fit.boxWidth >= 1 && dots.fit.boxHeight >= 1;
}

std::optional<Request> parseWords(Words words) {
    Request request;
    if (words.size() < 2 || !parse(words[0], request.maxPointsPerSide) ||
        !parse(words[1], request.page)) {
        return std::nullopt;
    }
    if (words.size() > 2 && !parseDots(words.subspan(2), request.dots.emplace())) {
        return std::nullopt;
    }
    return request;
}

bool writeHeader(const AnswerHeader& header) {
    return answerWith(std::as_bytes(std::span(&header, 1)));
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

bool answerWithPixels(const OpenedDocument& document, const Request& request) {
    const DrawnPage page = drawPage(document, request.page, request.maxPointsPerSide);
    if (!writeHeader(page.header)) return false;
    return page.surface == nullptr || writePixels(page);
}

bool answerWithDots(const OpenedDocument& document, const Request& request) {
    const RecordedPage page =
        recordPage(document, request.page, request.maxPointsPerSide, *request.dots);
    if (!writeHeader(page.header)) return false;
    return page.recording == nullptr ||
           drawRows(page, [](std::span<const Byte> row) { return answerWith(std::as_bytes(row)); });
}

bool answer(const OpenedDocument& document, const Request& request) {
    return request.dots ? answerWithDots(document, request) : answerWithPixels(document, request);
}

Task taskOf(const std::vector<std::string_view>& words) {
    const std::optional<Request> request = parseWords(words);
    if (!request) return nullptr;
    return [request = *request](int document) { return answer(openDocument(document), request); };
}

TaskMaker open(int input) {
    const auto document = std::make_shared<const OpenedDocument>(openDocument(input));
    return [document](const std::vector<std::string_view>& words) -> Task {
        const std::optional<Request> request = parseWords(words);
        if (!request) return nullptr;
        return [document, request = *request](int) { return answer(*document, request); };
    };
}

constexpr AnswerHeader kOutOfMemory = [] {
    AnswerHeader header;
    header.outcome = pdf::Answer::kOutOfMemory;
    return header;
}();

constexpr const char* kUsage = "MAX-POINTS PAGE [RESOLUTION FIT TURN WIDTH HEIGHT] < document";

}  // namespace

}  // namespace tavio::pdf_helper

int main(int count, char** arguments) {
    using namespace tavio::pdf_helper;
    const tavio::helper_program::Program program{
        kUsage, taskOf, std::as_bytes(std::span(&kOutOfMemory, 1)), drawBuiltInPage, open};
    return tavio::helper_program::run(program, {arguments, static_cast<std::size_t>(count)});
}
