#include "support/literal_encoder.h"

#include <cctype>
#include <cstdlib>
#include <vector>

namespace tavio::test {
namespace {

using std::int32_t;
using std::uint32_t;
using std::uint64_t;

int32_t add(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

int32_t sub(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// The value of a text; strtoll takes a sign and stops at the first other character.
int32_t valueOf(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos || std::isspace(static_cast<Byte>(text[first])) != 0) return 0;
    const long long value = std::strtoll(text.c_str() + first, nullptr, 10);
    if (value > INT32_MAX) return INT32_MAX;
    if (value < INT32_MIN) return INT32_MIN;
    return static_cast<int32_t>(value);
}

using Run = LiteralRun;

constexpr int32_t DATA = 1;
constexpr int32_t ZEROS = 0;

class Encoder {
  public:
    Encoder(std::span<const Byte> file, const LiteralJob& job) : buffer(file), job_(job) {}

    LiteralTraffic encode() {
        readSizes();
        firstPassOpening();
        for (uint32_t y = 0; y < biHeight; ++y) row(y);
        trim();
        traffic.firstPass.assign(bit_image.begin(), bit_image.begin() + j);
        secondPass();
        traffic.data = refined;
        traffic.lineMap = linemap;
        return traffic;
    }

  private:
    uint32_t word(std::size_t at) const {
        return buffer[at] | (uint32_t{buffer[at + 1]} << 8) | (uint32_t{buffer[at + 2]} << 16) |
               (uint32_t{buffer[at + 3]} << 24);
    }

    void readSizes() {
        biWidth = word(18);
        biHeight = word(22);
        const double DataSize = biWidth * 1 / 32.0 * 4.0;
        RowSize = ((1 * biWidth + 31) >> 3) & ~3U;
        NibblesToIgnore = static_cast<uint32_t>((RowSize - DataSize) / 0.5);
        BytesToIgnore = NibblesToIgnore >> 1;
        CompRowSize = RowSize * 8;
        CompBuffer.assign(CompRowSize, 0);
        bmpcnt = buffer.size() - 1;
        arraypointer = static_cast<int32_t>(CompRowSize) - 1;
    }

    void put(const std::string& text) {
        for (const char c : text) {
            bit_image.push_back(static_cast<Byte>(c));
            ++j;
        }
    }

    void firstPassOpening() {
        originalx = job_.row;
        originaly = job_.column;
        if (job_.logoNumber.empty()) {
            command = job_.path + job_.orientation + "<RE0><DI><RC" + std::to_string(originalx) +
                      "," + std::to_string(originaly) + ">";
        } else {
            originalx = originaly = 0;
            traffic.text = "<RE0><DI><RC0,0><" + job_.logoNumber + ">\x1B";
            command.clear();
        }
        put(command);
        rx = originalx;
        ry = originaly;
    }

    void row(uint32_t y) {
        for (uint32_t x = 0; x < RowSize; ++x) {
            uint32_t charx = buffer[bmpcnt] ^ 255U;
            --bmpcnt;
            if (x < BytesToIgnore) {
                charx = 0;
                NibblesToIgnore -= 2;
            } else if (NibblesToIgnore != 0) {
                charx &= 240;
                NibblesToIgnore = 0;
            }
            moveBits(charx);
        }
        ++bitcounter;
        arraypointer = static_cast<int32_t>(CompRowSize) - 1;
        if ((y + 1) % 8 == 0 && static_cast<int32_t>(y) >= 1) bandComplete(y);
    }

    void moveBits(uint32_t charx) {
        static const uint32_t bitmaskx[8] = {1, 2, 4, 8, 16, 32, 64, 128};
        for (int32_t bitplacex = 0; bitplacex < 8; ++bitplacex) {
            const uint32_t chartmp1 = charx & bitmaskx[bitplacex];
            const uint32_t chartmp2 = chartmp1 >> bitplacex;
            const uint32_t chartmp3 = (chartmp2 << (7 - bitcounter)) & 255U;
            Byte& column = CompBuffer.at(static_cast<std::size_t>(arraypointer));
            column = static_cast<Byte>(column | chartmp3);
            --arraypointer;
        }
    }

    void bandComplete(uint32_t y) {
        bitcounter = 0;
        put("<G" + std::to_string(CompRowSize) + ">");
        for (const Byte column : CompBuffer) {
            bit_image.push_back(column);
            ++j;
        }
        if (isLandscape()) {
            rx = add(originalx, static_cast<int32_t>(y + 1));
            ry = originaly;
        } else {
            ry = add(originaly, static_cast<int32_t>(y + 1));
            rx = sub(job_.portraitDots, originalx);
        }
        rc_position = j;
        command = "<RC" + std::to_string(rx) + "," + std::to_string(ry) + ">";
        put(command);
        CompBuffer.assign(CompRowSize, 0);
    }

    void trim() {
        for (int32_t i = rc_position; i < j; ++i) bit_image[static_cast<std::size_t>(i)] = 0;
        j = rc_position;
    }

    bool isLandscape() const { return job_.orientation == "<LM>"; }

    Byte at(int64_t index) const {
        return index >= 0 && index < j ? bit_image[static_cast<std::size_t>(index)] : Byte{0};
    }

    std::string characters(int64_t from, int64_t upTo) const {
        std::string text;
        for (int64_t i = from; i < upTo; ++i) text += static_cast<char>(at(i));
        return text;
    }

    void secondPass() {
        if (job_.logoNumber.empty()) command = job_.path + job_.orientation + "<RE0><DI>";
        refine(command);
        for (int32_t k = 0; k < j; ++k) {
            if (at(k) == '<' && at(k + 1) == 'R' && at(k + 2) == 'C') bandAt(k);
        }
        if (!job_.logoNumber.empty()) refine("\x1B");
    }

    void refine(const std::string& text) {
        refined.insert(refined.end(), text.begin(), text.end());
    }

    void bandAt(int32_t k) {
        start_command = k;
        int64_t i2 = 0;
        int64_t i3 = int64_t{k} + 3;
        for (; at(i3) != '>'; ++i3) {
            if (i3 >= j) return;  // abandoned
            if (at(i3) == ',') i2 = i3;
        }
        const std::string row = characters(int64_t{k} + 3, i2);
        const std::string column = characters(i2 + 1, i3);
        if (!row.empty()) strx = row;
        if (!column.empty()) stry = column;

        int64_t i1 = i3 + 1;
        i2 = i3 + 2;
        if (at(i1) == '<' && at(i2) == 'G') {
            for (i3 = i2 + 1; at(i3) != '>'; ++i3)
                if (i3 >= j) return;  // abandoned
            start_data = static_cast<int32_t>(i3 + 1);
            const std::string count = characters(i2 + 1, i3);
            if (!count.empty()) strg = count;
        } else {
            i3 = i2 + 1;
        }
        lineMap(i3 + 1, valueOf(strg));
        if (linemap.size() >= 2) {
            severalRuns();
        } else if (linemap.size() == 1 && linemap[0].block_type == DATA) {
            copyWhole();
        }
    }

    void lineMap(int64_t data, int32_t len2) {
        traffic.hasBand = true;
        linemap.clear();
        for (int32_t n = 0; n < len2; ++n) {
            const int32_t type = at(data + n) != 0 ? DATA : ZEROS;
            if (linemap.empty() || linemap.back().block_type != type)
                linemap.push_back({static_cast<int32_t>(data + n), 0, type});
            // Past the stream's end there are only zeros. They are counted at once, as there may be
            // billions.
            const int32_t step = data + n >= j ? len2 - n : 1;
            linemap.back().count += step;
            n += step - 1;
        }
    }

    void severalRuns() {
        int32_t i3 = 0;
        rg = line_total = 0;
        bool command_ready = false;
        for (std::size_t i = 0; i < linemap.size(); ++i) {
            const Run& run = linemap[i];
            const bool isLast = i == linemap.size() - 1;
            if (run.block_type == DATA) {
                if (rg == 0) start(run, i3);
                rg += run.count;
            } else if (run.count >= 19) {
                if (rg > 0) command_ready = true;
                if (!isLast) i3 += run.count;
            } else {
                if (rg == 0) start(run, i3);
                if (!isLast) rg += run.count;
            }
            if (command_ready) {
                stretch();
                line_total += rg;
                rg = 0;
                command_ready = false;
            }
        }
        if (rg > 0) stretch();
    }

    void start(const Run& run, int32_t i3) {
        first = run.start;
        if (isLandscape()) {
            if (rx != valueOf(strx)) {
                ry = i3;
                line_total = 0;
            } else {
                ry = add(add(i3, line_total), originaly);
            }
            rx = valueOf(strx);
            if (ry == 0) ry = originaly;
        } else {
            if (ry != valueOf(stry)) {
                rx = sub(job_.portraitDots, add(i3, originalx));
                line_total = 0;
            } else {
                rx = sub(job_.portraitDots, add(add(i3, line_total), originalx));
            }
            ry = valueOf(stry);
            if (rx == job_.portraitDots) rx = sub(job_.portraitDots, originalx);
        }
    }

    void stretch() {
        refine("<RC" + std::to_string(rx) + "," + std::to_string(ry) + "><G" + std::to_string(rg) +
               ">");
        for (int32_t n = 0; n < rg; ++n) refined.push_back(at(int64_t{first} + n));
    }

    void copyWhole() {
        const int32_t total_command_length =
            sub(add(sub(start_data, start_command), valueOf(strg)), 1);
        for (int64_t n = 0; n <= total_command_length && start_command + n < j; ++n)
            refined.push_back(at(start_command + n));
    }

    std::span<const Byte> buffer;
    LiteralJob job_;
    LiteralTraffic traffic;
    uint32_t biWidth = 0, biHeight = 0, RowSize = 0, CompRowSize = 0;
    uint32_t NibblesToIgnore = 0, BytesToIgnore = 0;
    uint64_t bmpcnt = 0;
    int32_t arraypointer = 0, bitcounter = 0;
    int32_t originalx = 0, originaly = 0, rx = 0, ry = 0, rc_position = 0, j = 0;
    std::vector<Byte> bit_image, CompBuffer, refined;
    std::string command, strx, stry, strg;
    std::vector<Run> linemap;
    int32_t start_command = 0, start_data = 0, rg = 0, line_total = 0, first = 0;
};

}  // namespace

LiteralTraffic encodeLiterally(std::span<const Byte> file, const LiteralJob& job) {
    return Encoder(file, job).encode();
}

}  // namespace tavio::test
