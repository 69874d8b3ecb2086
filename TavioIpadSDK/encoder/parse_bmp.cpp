#include "TavioIpadSDK/encoder/parse_bmp.h"

#include <cstdint>
#include <exception>

#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/encoder/state.h"
#include "TavioIpadSDK/platform/notice.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/job.h"
#include "TavioIpadSDK/settings/orientation.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio::encoder {
namespace {

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

Placement placementAt(std::int32_t row, std::int32_t column) {
    return {settings::isLandscape(PrinterOrientation), row, column, portrait_dots};
}

void send(const StreamBytes& stream) {
    SendData(stream.data(), static_cast<std::int32_t>(stream.size()));
}

void print(std::span<const Byte> file) {
    send(encodePrint(file, bminfo, openingCommands(PrinterPath, PrinterOrientation),
                     placementAt(originalx, originaly), linemap));
}

// Everything is encoded before the first command is sent: if the logo were too long, the printer
// would wait for the rest of it.
void storeLogo(std::span<const Byte> file) {
    const StreamBytes bytes = encodeLogo(file, bminfo, placementAt(0, 0), linemap);
    originalx = originaly = 0;
    SendString(beginLogo(LogoNumber));
    send(bytes);
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
