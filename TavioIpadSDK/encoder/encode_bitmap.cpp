#include "TavioIpadSDK/encoder/encode_bitmap.h"

#include <cassert>

#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/stretches.h"
#include "TavioIpadSDK/platform/text.h"

namespace tavio::encoder {
namespace {

constexpr Byte kEscape = 27;
constexpr std::string_view kGraphicsMode = "<RE0><DI>";

BandStream bandsOf(std::span<const Byte> file, const InfoHeader& info, const std::string& opening,
                   const Placement& placement) {
    const RowGeometry row = rowGeometry(info);
    const std::size_t pixelBytes = std::size_t{row.RowSize} * info.biHeight;
    assert(kHeaderSize + pixelBytes <= file.size());
    const auto pixels = file.last(pixelBytes);
    return {pixels, row, info.biHeight, platform::lowBytesOfUtf16(opening), placement};
}

}  // namespace

std::string openingCommands(std::string_view path, std::string_view orientation) {
    return std::string(path).append(orientation).append(kGraphicsMode);
}

std::string beginLogo(std::string_view number) {
    return std::string(kGraphicsMode).append("<RC0,0><").append(number).append(">\x1B");
}

std::string printLogoCommands(std::int32_t number, std::int32_t row, std::int32_t column) {
    return "<SP" + std::to_string(row) + "," + std::to_string(column) + "><LD" +
           std::to_string(number) + ">";
}

StreamBytes encodePrint(std::span<const Byte> file, const InfoHeader& info,
                        const std::string& opening, const Placement& placement,
                        std::vector<LineParser>& lineMap) {
    const std::string position = positionCommand(placement.row, placement.column);
    BandStream bands = bandsOf(file, info, opening + position, placement);
    return writeStretches(bands, platform::lowBytesOfUtf16(opening), placement, lineMap);
}

StreamBytes encodeLogo(std::span<const Byte> file, const InfoHeader& info,
                       const Placement& placement, std::vector<LineParser>& lineMap) {
    BandStream bands = bandsOf(file, info, "", placement);
    const std::string opening = bands.commandAfterLastBand();
    return writeStretches(bands, platform::lowBytesOfUtf16(opening), placement, lineMap,
                          std::span(&kEscape, 1));
}

}  // namespace tavio::encoder
