#include "support/bitmaps.h"

#include <cstdio>

namespace tavio::test {

using pictures::Picture;
using pictures::premultipliedPixel;

std::string readable(std::span<const Byte> bytes) {
    std::string text;
    for (const Byte byte : bytes) {
        if (byte >= 0x20 && byte < 0x7F) {
            text += static_cast<char>(byte);
        } else {
            char hex[8];
            std::snprintf(hex, sizeof hex, "{%02X}", static_cast<unsigned>(byte));
            text += hex;
        }
    }
    return text;
}

std::string readable(std::string_view text) {
    return readable(bytesOf(text));
}

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes whole;
    for (const Bytes& part : parts) whole.insert(whole.end(), part.begin(), part.end());
    return whole;
}

namespace {

void put32(Bytes& file, std::size_t at, std::size_t value) {
    for (std::size_t i = 0; i < 4; ++i) file[at + i] = static_cast<Byte>(value >> (8 * i));
}

}  // namespace

Bytes bitmapFile(const Rows& rows, bool paddingBits) {
    const std::size_t width = rows.empty() ? 0 : rows[0].size();
    const std::size_t rowSize = (width + 31) / 32 * 4;
    Bytes file(62 + rowSize * rows.size(), 0);
    file[0] = 'B';
    file[1] = 'M';
    put32(file, 2, file.size());
    file[10] = 62;
    file[14] = 40;
    put32(file, 18, width);
    put32(file, 22, rows.size());
    file[26] = file[28] = 1;
    put32(file, 34, rowSize * rows.size());
    file[58] = file[59] = file[60] = 255;
    for (std::size_t y = 0; y < rows.size(); ++y) {
        Byte* row = file.data() + 62 + (rows.size() - 1 - y) * rowSize;
        for (std::size_t x = 0; x < rowSize * 8; ++x) {
            const bool bit = x < width ? rows[y][x] != 'X' : paddingBits;
            if (bit) row[x / 8] = static_cast<Byte>(row[x / 8] | (0x80 >> (x % 8)));
        }
    }
    return file;
}

Rows allBlack(std::size_t width, std::size_t height) {
    return Rows(height, std::string(width, 'X'));
}

Picture pictureOf(const Rows& rows) {
    Picture picture;
    picture.height = static_cast<std::int32_t>(rows.size());
    picture.width = rows.empty() ? 0 : static_cast<std::int32_t>(rows[0].size());
    for (const std::string& row : rows)
        for (const char c : row)
            picture.pixels.push_back(c == 'X' ? premultipliedPixel(0, 0, 0, 255)
                                              : premultipliedPixel(255, 255, 255, 255));
    return picture;
}

Picture plainPicture(std::int32_t width, std::int32_t height, unsigned red, unsigned green,
                     unsigned blue) {
    Picture picture;
    picture.width = width;
    picture.height = height;
    picture.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                          premultipliedPixel(red, green, blue, 255));
    return picture;
}

}  // namespace tavio::test
