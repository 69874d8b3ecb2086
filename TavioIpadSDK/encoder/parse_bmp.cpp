#include "TavioIpadSDK/encoder/parse_bmp.h"

#include <cassert>
#include <cstddef>
#include <exception>
#include <string>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/state.h"
#include "TavioIpadSDK/encoder/stream_bytes.h"
#include "TavioIpadSDK/encoder/stretches.h"
#include "TavioIpadSDK/platform/notice.h"
#include "TavioIpadSDK/platform/text.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/job.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio::encoder {
namespace {

constexpr Byte kEscape = 27;

void refuse(const char* message) {
    platform::showNotice({"Alert", message, "OK"});
}

void refuseDimensions() {
    refuse("Error - Invalid Image width/height/depth.");
}

// Reads and checks the file. Shows the notice of a refusal and returns false, or returns true.
bool accept(std::span<const Byte> file) {
    if (file.size() < kHeaderSize) {
        refuse("Error - Image data is incomplete.");
        return false;
    }
    bmfile = readFileHeader(file.first<kHeaderSize>());
    bminfo = readInfoHeader(file.first<kHeaderSize>());
    switch (judge(bminfo, file.size())) {
        case Verdict::kBadDimensions:
            refuseDimensions();
            return false;
        case Verdict::kNotMonochrome:
            refuse("Error - BMP file must be monochrome.");
            return false;
        case Verdict::kIncomplete:
            refuse("Error - Image data is incomplete.");
            return false;
        case Verdict::kAccepted:
            break;
    }
    return true;
}

BandStream bandsOf(std::span<const Byte> file, const std::string& opening,
                   const Placement& placement) {
    const RowGeometry row = rowGeometry(bminfo);
    const std::size_t pixelBytes = std::size_t{row.RowSize} * bminfo.biHeight;
    assert(kHeaderSize + pixelBytes <= file.size());
    const auto pixels = file.last(pixelBytes);
    return {pixels, row, bminfo.biHeight, platform::lowBytesOfUtf16(opening), placement};
}

Placement placementAt(std::int32_t row, std::int32_t column) {
    return {PrinterOrientation == "<LM>", row, column, portrait_dots};
}

void print(std::span<const Byte> file) {
    const Placement placement = placementAt(originalx, originaly);
    const std::string opening = PrinterPath + PrinterOrientation + "<RE0><DI>";
    const std::string position = positionCommand(originalx, originaly);
    BandStream bands = bandsOf(file, opening + position, placement);
    const StreamBytes stream =
        writeStretches(bands, platform::lowBytesOfUtf16(opening), placement, linemap);
    SendData(stream.data(), static_cast<std::int32_t>(stream.size()));
}

// Everything is encoded before the first command is sent: if the logo were too long, the printer
// would wait for the rest of it.
void storeLogo(std::span<const Byte> file) {
    const Placement placement = placementAt(0, 0);
    BandStream bands = bandsOf(file, "", placement);
    const std::string opening = bands.commandAfterLastBand();
    const StreamBytes bytes = writeStretches(bands, platform::lowBytesOfUtf16(opening), placement,
                                             linemap, std::span<const Byte>(&kEscape, 1));

    originalx = originaly = 0;
    SendString("<RE0><DI><RC0,0><" + LogoNumber + ">" + static_cast<char>(kEscape));
    SendData(bytes.data(), static_cast<std::int32_t>(bytes.size()));
}

}  // namespace

void ParseBMP(std::span<const Byte> myData) noexcept {
    try {
        if (!accept(myData)) return;
        if (LogoNumber.empty()) {
            print(myData);
        } else {
            storeLogo(myData);
        }
    } catch (const std::exception&) {  // StreamTooLong, or no memory
        refuseDimensions();
    }
}

}  // namespace tavio::encoder
