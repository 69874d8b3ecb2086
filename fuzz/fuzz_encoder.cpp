// Compares the encoder with its slow twin on any graphics and settings.

#include <cstdlib>
#include <string>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/literal_encoder.h"

namespace {

using namespace tavio;

// A bitmap whose bands hold the input's bytes as columns.
Bytes bitmapOf(const std::uint8_t* data, std::size_t size, std::size_t width) {
    test::Rows rows;
    for (std::size_t first = 0; first + width <= size; first += width) {
        for (unsigned bit = 8; bit-- > 0;) {
            rows.emplace_back();
            for (std::size_t c = 0; c < width; ++c)
                rows.back() += ((data[first + c] >> bit) & 1U) != 0 ? 'X' : ' ';
        }
    }
    return test::bitmapFile(rows);
}

void compareWithTwin(const Bytes& file, const test::LiteralJob& job) {
    PrinterPath = job.path;
    PrinterOrientation = job.orientation;
    LogoNumber = job.logoNumber;
    originalx = job.row;
    originaly = job.column;
    portrait_dots = job.portraitDots;
    encoder::ParseBMP(file);
    const test::LiteralTraffic literal = test::encodeLiterally(file, job);
    if (test::transport().dataSent() != literal.data) std::abort();
    if (test::transport().textSent() != literal.text) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavio::test::resetAllState();
    tavio::Mode = "WF";
    tavio::platform::setNoticeHandler([](const tavio::platform::Notice&) {});
    tavio::encoder::ParseBMP({data, size});  // as a file of its own: refused, or printed

    if (size < 40 || size > 4000) return 0;
    tavio::test::transport().calls.clear();
    tavio::test::LiteralJob job;
    job.orientation = std::string((data[0] & 1U) != 0 ? "<LM>" : "<PM>");
    if ((data[0] & 2U) != 0) job.logoNumber.push_back('7');
    if ((data[0] & 4U) != 0) job.path = std::string(data + 4, data + 8);
    for (char& c : job.path) c = static_cast<char>(c & 0x7F);  // the two differ in UTF-8 only
    job.row = data[1] - 128;
    job.column = data[2] - 128;
    job.portraitDots = data[3] * 5;
    compareWithTwin(bitmapOf(data + 8, size - 8, 32), job);
    return 0;
}
