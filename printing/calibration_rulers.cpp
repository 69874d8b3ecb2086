#include "tavio/printing/calibration_rulers.h"

#include <algorithm>
#include <string>

namespace tavio::printing {
namespace {

constexpr std::int32_t kMinSide = 10;        // of an area with anything on it
constexpr std::int32_t kMaxMarkLength = 30;  // of corner marks
constexpr std::int32_t kOuterBand = 20;      // left free by the ticks, for marks and slanted lines
constexpr std::int32_t kSlantSteps = 10;
constexpr std::int32_t kSlantLength = 10;  // of each step

enum class Edge : std::uint8_t { kTop, kBottom, kLeft, kRight };

// A ruler along one edge. Positions run along the edge, distances inwards from it.
class Ruler {
  public:
    Ruler(Edge edge, const SheetArea& area, CalibrationSheet& sheet)
        : edge_(edge),
          area_(area),
          sheet_(sheet),
          begin_(isAcross() ? area.left : area.top),
          end_(isAcross() ? area.right : area.bottom) {}

    // How far the ruler reaches inwards.
    static std::int32_t depthOn(const CalibrationSheet& sheet) {
        return numberDistance(sheet) + sheet.textSize("0").height + 4;
    }

    void drawMarks() {
        const std::int32_t length = std::min(kMaxMarkLength, (end_ - begin_) / 2);
        lineAlong(begin_, 0, length, 2 * sheet_.thin());
        lineAlong(end_ - length, 0, length, 2 * sheet_.thin());
    }

    void drawTicks() {
        const std::int32_t corner = depthOn(sheet_);
        for (std::int32_t at = (begin_ + corner + 9) / 10 * 10; at < end_ - corner; at += 10) {
            line(at, kOuterBand, tickLength(at));
            if (at % 100 == 0) number(at, corner);
        }
        drawSlant(begin_ + (corner <= 100 ? 100 : 200));
    }

  private:
    static std::int32_t numberDistance(const CalibrationSheet& sheet) {
        return kOuterBand + 10 * sheet.unit() + 2;
    }

    bool isAcross() const { return edge_ == Edge::kTop || edge_ == Edge::kBottom; }

    std::int32_t tickLength(std::int32_t at) const {
        if (at % 100 == 0) return 10 * sheet_.unit();
        return (at % 50 == 0 ? 7 : 4) * sheet_.unit();
    }

    // Where something of this depth at this distance from the edge begins on the ticket.
    std::int32_t inwards(std::int32_t distance, std::int32_t depth) const {
        if (edge_ == Edge::kTop) return area_.top + distance;
        if (edge_ == Edge::kLeft) return area_.left + distance;
        return (edge_ == Edge::kBottom ? area_.bottom : area_.right) - distance - depth;
    }

    // A tick.
    void line(std::int32_t at, std::int32_t distance, std::int32_t length) {
        const std::int32_t from = inwards(distance, length);
        if (isAcross()) {
            sheet_.lineDown(at, from, length, sheet_.thin());
        } else {
            sheet_.lineAcross(from, at, length, sheet_.thin());
        }
    }

    // A line along the edge.
    void lineAlong(std::int32_t at, std::int32_t distance, std::int32_t length,
                   std::int32_t thickness) {
        const std::int32_t from = inwards(distance, thickness);
        if (isAcross()) {
            sheet_.lineAcross(at, from, length, thickness);
        } else {
            sheet_.lineDown(from, at, length, thickness);
        }
    }

    // Its middle is at the position; in the corner it has no room.
    void number(std::int32_t at, std::int32_t corner) {
        const std::string text = std::to_string(at);
        const Size size = sheet_.textSize(text);
        const std::int32_t from = at - size.width / 2;
        if (from < begin_ + corner || from + size.width > end_ - corner) return;
        const std::int32_t across = inwards(numberDistance(sheet_), size.height);
        if (isAcross()) {
            sheet_.text(text, from, across);
        } else {
            sheet_.text(text, across, from, edge_ == Edge::kLeft ? Turn::k270 : Turn::k90);
        }
    }

    // Each step lies one dot further inwards: the first that can be seen tells how many dots are lost.
    void drawSlant(std::int32_t first) {
        for (std::int32_t step = 0; step < kSlantSteps; ++step) {
            const std::int32_t at = first + step * kSlantLength;
            if (at + kSlantLength > end_ - kMaxMarkLength - kSlantLength) return;
            lineAlong(at, step, kSlantLength, sheet_.thin());
        }
    }

    Edge edge_;
    SheetArea area_;
    CalibrationSheet& sheet_;
    std::int32_t begin_;
    std::int32_t end_;
};

}  // namespace

SheetArea drawRulers(const SheetArea& area, CalibrationSheet& sheet) {
    if (area.right - area.left < kMinSide || area.bottom - area.top < kMinSide) return {};
    const std::int32_t depth = Ruler::depthOn(sheet) + sheet.unit();
    const bool hasRoom = std::min(area.right - area.left, area.bottom - area.top) >= 2 * depth;
    for (const Edge edge : {Edge::kTop, Edge::kBottom, Edge::kLeft, Edge::kRight}) {
        Ruler ruler(edge, area, sheet);
        ruler.drawMarks();
        if (hasRoom) ruler.drawTicks();
    }
    return {area.left + depth, area.top + depth, area.right - depth, area.bottom - depth};
}

}  // namespace tavio::printing
