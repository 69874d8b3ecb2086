#include "intake/picture_files.h"

#include <string_view>

namespace tavio::test {
namespace {

void append(Bytes& file, std::string_view bytes) {
    for (const char c : bytes) file.push_back(static_cast<Byte>(c));
}

void appendLittle(Bytes& file, std::size_t value, int count) {
    for (int i = 0; i < count; ++i) file.push_back(static_cast<Byte>(value >> (8 * i)));
}

void appendBig32(Bytes& file, UInt32 value) {
    for (int shift = 24; shift >= 0; shift -= 8) file.push_back(static_cast<Byte>(value >> shift));
}

UInt32 crc32(const Bytes& bytes) {
    UInt32 crc = 0xFFFFFFFF;
    for (const Byte byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0);
    }
    return ~crc;
}

UInt32 adler32(const Bytes& bytes) {
    UInt32 a = 1;
    UInt32 b = 0;
    for (const Byte byte : bytes) {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    return (b << 16) | a;
}

void appendChunk(Bytes& png, std::string_view type, const Bytes& data) {
    appendBig32(png, static_cast<UInt32>(data.size()));
    Bytes typed;
    append(typed, type);
    typed.insert(typed.end(), data.begin(), data.end());
    png.insert(png.end(), typed.begin(), typed.end());
    appendBig32(png, crc32(typed));
}

// A zlib stream of one stored block.
Bytes stored(const Bytes& data) {
    Bytes stream = {0x78, 0x01, 0x01};
    appendLittle(stream, data.size(), 2);
    appendLittle(stream, ~data.size(), 2);
    stream.insert(stream.end(), data.begin(), data.end());
    appendBig32(stream, adler32(data));
    return stream;
}

// One directory of one entry: tag 112 (orientation), a 16-bit number.
Bytes exifOrientation(Byte orientation) {
    return {'M', 'M', 0, 42, 0, 0, 0,           8, 0, 1, 0x01, 0x12, 0,
            3,   0,   0, 0,  1, 0, orientation, 0, 0, 0, 0,    0,    0};
}

}  // namespace

Bytes colourBmp(const Rows& rows) {
    const std::size_t width = rows.at(0).size();
    const std::size_t rowSize = (width * 3 + 3) / 4 * 4;
    Bytes file;
    append(file, "BM");
    appendLittle(file, 54 + rowSize * rows.size(), 4);
    appendLittle(file, 0, 4);
    appendLittle(file, 54, 4);
    appendLittle(file, 40, 4);
    appendLittle(file, width, 4);
    appendLittle(file, rows.size(), 4);
    appendLittle(file, 1, 2);
    appendLittle(file, 24, 2);
    file.resize(54);
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        for (const char c : *row)
            for (int i = 0; i < 3; ++i) file.push_back(c == 'X' ? Byte{0} : Byte{255});
        file.resize(file.size() + rowSize - width * 3);
    }
    return file;
}

Bytes blackBmp(std::size_t width, std::size_t height) {
    return colourBmp(allBlack(width, height));
}

Bytes greyPng(const Rows& rows, Byte orientation) {
    Bytes header;
    appendBig32(header, static_cast<UInt32>(rows.at(0).size()));
    appendBig32(header, static_cast<UInt32>(rows.size()));
    for (const Byte field : Bytes{8, 0, 0, 0, 0}) header.push_back(field);
    Bytes pixels;
    for (const std::string& row : rows) {
        pixels.push_back(0);  // no filter
        for (const char c : row) pixels.push_back(c == 'X' ? Byte{0} : Byte{255});
    }
    Bytes png;
    append(png, "\x89PNG\r\n\x1A\n");
    appendChunk(png, "IHDR", header);
    appendChunk(png, "eXIf", exifOrientation(orientation));
    appendChunk(png, "IDAT", stored(pixels));
    appendChunk(png, "IEND", {});
    return png;
}

}  // namespace tavio::test
