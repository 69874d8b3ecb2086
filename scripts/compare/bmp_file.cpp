#include <algorithm>
#include <array>

#include "bit_row.h"
#include "picture_files.h"

namespace compare {
namespace {

using tavio::Byte;

enum Coding : std::uint32_t { kPlain = 0, kRunLength8 = 1, kRunLength4 = 2, kMasks = 3 };

struct Form {
    std::uint32_t headerBytes = 40;
    int bits = 24;
    Coding coding = kPlain;
    bool isTopDown = false;
    std::uint32_t colours = 0;  // of the palette
};

void append(Bytes& bytes, std::uint32_t value, unsigned count) {
    for (unsigned index = 0; index < count; ++index)
        bytes.push_back(static_cast<Byte>(value >> (8 * index)));
}

Form randomForm(Random& random) {
    Form form;
    form.headerBytes = random.pick({12U, 40U, 40U, 40U, 108U, 124U});
    const bool isOld = form.headerBytes == 12;
    form.bits = isOld ? random.pick({1, 4, 8, 24}) : random.pick({1, 4, 8, 16, 24, 32});
    if (!isOld && form.bits == 8 && random.chance(40)) form.coding = kRunLength8;
    if (!isOld && form.bits == 4 && random.chance(40)) form.coding = kRunLength4;
    if (!isOld && (form.bits == 16 || form.bits == 32) && random.chance(50)) form.coding = kMasks;
    const bool isRunLength = form.coding == kRunLength8 || form.coding == kRunLength4;
    form.isTopDown = !isOld && !isRunLength && random.chance(20);
    if (form.bits <= 8) form.colours = 1U << static_cast<unsigned>(form.bits);
    if (form.colours > 2 && !isOld && random.chance(10)) form.colours -= 2;
    return form;
}

void appendMasks(Bytes& header, int bits) {
    if (bits == 16) {
        for (const std::uint32_t mask : {0xF800U, 0x07E0U, 0x001FU}) append(header, mask, 4);
    } else {
        for (const std::uint32_t mask : {0xFF0000U, 0x00FF00U, 0x0000FFU}) append(header, mask, 4);
    }
}

// What follows the file header up to the palette.
Bytes infoHeader(const Pixels& pixels, const Form& form, std::size_t dataBytes) {
    Bytes header;
    append(header, form.headerBytes, 4);
    const unsigned sizeBytes = form.headerBytes == 12 ? 2 : 4;
    append(header, static_cast<std::uint32_t>(pixels.width), sizeBytes);
    const int height = form.isTopDown ? -pixels.height : pixels.height;
    append(header, static_cast<std::uint32_t>(height), sizeBytes);
    append(header, 1, 2);
    append(header, static_cast<std::uint32_t>(form.bits), 2);
    if (form.headerBytes == 12) return header;
    append(header, form.coding, 4);
    append(header, static_cast<std::uint32_t>(dataBytes), 4);
    append(header, 2835, 4);  // dots per metre
    append(header, 2835, 4);
    append(header, form.colours, 4);
    append(header, 0, 4);
    if (form.coding == kMasks) appendMasks(header, form.bits);
    header.resize(std::max<std::size_t>(header.size(), form.headerBytes));
    return header;
}

Bytes palette(Random& random, const Form& form) {
    Bytes entries;
    const bool isGrey = random.chance(50);
    for (std::uint32_t index = 0; index < form.colours; ++index) {
        const auto level = static_cast<Byte>(index * 255 / (form.colours - 1));
        for (int colour = 0; colour < 3; ++colour)
            entries.push_back(isGrey ? level : random.byte());
        if (form.headerBytes != 12) entries.push_back(0);
    }
    return entries;
}

void addPixel(BitRow& row, const Byte* pixel, const Form& form) {
    if (form.bits <= 8) {
        row.add(greyOf(pixel) >> static_cast<unsigned>(8 - form.bits), form.bits);
    } else if (form.bits == 16) {
        const unsigned greenBits = form.coding == kMasks ? 6 : 5;
        const unsigned green = unsigned{pixel[1]} >> (8 - greenBits);
        const unsigned word =
            (unsigned{pixel[0]} >> 3) << (5 + greenBits) | green << 5 | unsigned{pixel[2]} >> 3;
        row.addByte(word & 255U);
        row.addByte(word >> 8);
    } else {
        for (const int colour : {2, 1, 0}) row.addByte(pixel[colour]);
        if (form.bits == 32) row.addByte(pixel[3]);
    }
}

Bytes plainRow(const Pixels& pixels, int y, const Form& form) {
    BitRow row;
    for (int x = 0; x < pixels.width; ++x) addPixel(row, pixels.at(x, y), form);
    return std::move(row).padded(4);
}

// One run for each stretch of a colour; of 4 bits, two equal pixels in a byte.
Bytes runLengthRow(const Pixels& pixels, int y, const Form& form) {
    const auto indexAt = [&](int x) {
        const unsigned index = unsigned{greyOf(pixels.at(x, y))} >> (8U - unsigned(form.bits));
        return static_cast<Byte>(form.bits == 4 ? index * 17 : index);
    };
    Bytes row;
    for (int x = 0; x < pixels.width;) {
        int end = x + 1;
        while (end < pixels.width && end - x < 255 && indexAt(end) == indexAt(x)) ++end;
        row.insert(row.end(), {static_cast<Byte>(end - x), indexAt(x)});
        x = end;
    }
    const auto mark = static_cast<Byte>(y == 0 ? 1 : 0);  // the top row is the last one
    row.insert(row.end(), {0, mark});
    return row;
}

Bytes dataOf(const Pixels& pixels, const Form& form) {
    const bool isRunLength = form.coding == kRunLength8 || form.coding == kRunLength4;
    Bytes data;
    for (int row = 0; row < pixels.height; ++row) {
        const int y = form.isTopDown ? row : pixels.height - 1 - row;
        const Bytes part = isRunLength ? runLengthRow(pixels, y, form) : plainRow(pixels, y, form);
        data.insert(data.end(), part.begin(), part.end());
    }
    return data;
}

}  // namespace

Bytes bmpFile(Random& random, const Pixels& pixels) {
    const Form form = randomForm(random);
    const Bytes data = dataOf(pixels, form);
    const Bytes header = infoHeader(pixels, form, data.size());
    const Bytes colours = palette(random, form);
    constexpr std::size_t kFileHeaderBytes = 14;
    const std::size_t dataAt = kFileHeaderBytes + header.size() + colours.size();
    Bytes file = {'B', 'M'};
    append(file, static_cast<std::uint32_t>(dataAt + data.size()), 4);
    append(file, 0, 4);
    append(file, static_cast<std::uint32_t>(dataAt), 4);
    for (const Bytes& part : {header, colours, data})
        file.insert(file.end(), part.begin(), part.end());
    return file;
}

}  // namespace compare
