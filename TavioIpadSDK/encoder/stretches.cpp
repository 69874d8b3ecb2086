#include "TavioIpadSDK/encoder/stretches.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

#include "TavioIpadSDK/encoder/band_reader.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/line_map.h"
#include "TavioIpadSDK/encoder/stream_buffer.h"
#include "TavioIpadSDK/encoder/stream_size.h"
#include "TavioIpadSDK/encoder/stretch_count.h"
#include "TavioIpadSDK/encoder/stretch_places.h"

namespace tavio::encoder {
namespace {

// The bytes of a job around its bands.
struct Job {
    std::span<const Byte> opening;  // before the stretches
    std::span<const Byte> closing;  // after them
    Placement placement;
};

class StretchWriter {
  public:
    StretchWriter(BandStream& bands, const Placement& placement, StreamBuffer& out)
        : stream_(bands), out_(out), places_(placement, bands.afterLastBand()) {}

    // A mixed band: a stretch for each piece between its long blank runs.
    void writeMixed(BandReader& reader) {
        const BandNumbers numbers = reader.band()->numbers;
        const std::int64_t bandStart = reader.columns().start;
        reader.forEachPiece([&](const Columns& piece) {
            const auto left = static_cast<std::int32_t>(piece.start - bandStart);
            write(places_.next(left, numbers), static_cast<std::size_t>(piece.start),
                  static_cast<std::size_t>(piece.end - piece.start));
        });
    }

    // A printing band: its commands and columns, unchanged.
    void copyPrinting(const BandReader& reader) {
        out_.append(stream_.read(reader.band()->startCommand, reader.sizeAsItStands()));
    }

  private:
    void write(const Position& at, std::size_t first, std::size_t length);

    BandStream& stream_;
    StreamBuffer& out_;
    StretchPlaces places_;
    StretchCommands commands_;
};

// Many stretches are a few columns long: these are copied by one store of a fixed size, if source
// and target have room for it.
void StretchWriter::write(const Position& at, std::size_t first, std::size_t length) {
    constexpr std::size_t kShort = 32;
    const auto columns = static_cast<std::int32_t>(length);
    const std::span<const Byte> data = stream_.read(first, std::max(length, kShort));
    assert(data.size() >= length);
    if (Byte* const to = out_.next(StretchCommands::kRoom + std::max(length, kShort))) {
        Byte* const end = commands_.write(at.row, at.column, columns, to);
        if (length <= kShort && data.size() == kShort) {
            std::memcpy(end, data.data(), kShort);
        } else {
            std::memcpy(end, data.data(), length);
        }
        out_.takeWritten(static_cast<std::size_t>(end - to) + length);
        return;
    }
    std::array<Byte, StretchCommands::kRoom> text;
    const Byte* const end = commands_.write(at.row, at.column, columns, text.data());
    out_.append(std::span<const Byte>(text.data(), end));
    out_.append(data.first(length));
}

// Writes the bands that there is room for.
void writeBands(BandReader& reader, BandStream& bands, const Placement& placement,
                StreamBuffer& out) {
    StretchWriter writer(bands, placement, out);
    while (out.keptAll() && reader.next()) {
        switch (reader.kind()) {
            case ColumnKind::kBlank:
                reader.passSharing();
                break;
            case ColumnKind::kMixed:
                writer.writeMixed(reader);
                break;
            case ColumnKind::kPrinting:
                writer.copyPrinting(reader);
                break;
        }
    }
}

// The whole job; none if it takes more than `room` bytes.
std::optional<StreamBytes> writeInto(std::size_t room, BandReader& reader, BandStream& bands,
                                     const Job& job) {
    StreamBuffer out(room);
    out.append(job.opening);
    writeBands(reader, bands, job.placement, out);
    out.append(job.closing);
    if (!out.keptAll()) return std::nullopt;
    return out.release();
}

std::size_t countBytes(BandReader& reader, const BandStream& bands, const Job& job) {
    StreamSize size;
    size.add(job.opening.size());
    countStretches(reader, job.placement, bands.afterLastBand(), size);
    size.add(job.closing.size());
    return size.sum();
}

StreamBytes writeJob(BandReader& reader, BandStream& bands, const Job& job) {
    const std::size_t guess = job.opening.size() + bands.size() + job.closing.size();
    auto written = writeInto(std::min(guess, kMaxStreamBytes), reader, bands, job);
    if (!written) {
        reader.rewind();
        const std::size_t size = countBytes(reader, bands, job);
        reader.rewind();
        written = writeInto(size, reader, bands, job);
        assert(written && written->size() == size);
    }
    return *std::move(written);
}

void mapLastBand(BandStream& bands, const std::optional<FoundBand>& last,
                 std::vector<LineParser>& lineMap) {
    if (!last) return;
    const std::int32_t count = std::max(last->numbers.count, 0);
    mapRuns(bands.read(last->firstByte, static_cast<std::size_t>(count)),
            static_cast<std::int64_t>(last->firstByte), count, lineMap);
}

}  // namespace

StreamBytes writeStretches(BandStream& bands, std::span<const Byte> opening,
                           const Placement& placement, std::vector<LineParser>& lineMap,
                           std::span<const Byte> closing) {
    BandReader reader(bands);
    try {
        StreamBytes written = writeJob(reader, bands, {opening, closing, placement});
        mapLastBand(bands, reader.band(), lineMap);
        return written;
    } catch (const StreamTooLong&) {
        mapLastBand(bands, reader.band(), lineMap);
        throw;
    }
}

}  // namespace tavio::encoder
