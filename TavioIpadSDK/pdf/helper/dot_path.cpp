#include "TavioIpadSDK/pdf/helper/dot_path.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

namespace tavio::pdf_helper {

namespace {

constexpr double kStraight = 0.1;  // dots by which an upright line may lean

struct PathDeleter {
    void operator()(cairo_path_t* path) const { cairo_path_destroy(path); }
};

// Reads and writes places of the context's current coordinates as dots.
class DotGrid {
  public:
    DotGrid(cairo_t* context, double pixelsPerDot) : context_(context), pixels_(pixelsPerDot) {}

    Place dotsOf(const cairo_path_data_t& data) const {
        Place place{data.point.x, data.point.y};
        cairo_user_to_device(context_, &place.x, &place.y);
        return {place.x / pixels_, place.y / pixels_};
    }
    Place userOf(const Place& dots) const {
        Place place{dots.x * pixels_, dots.y * pixels_};
        cairo_device_to_user(context_, &place.x, &place.y);
        return place;
    }

  private:
    cairo_t* context_;
    double pixels_;
};

void markLine(Node& from, Node& to) {
    const double x = std::abs(to.place.x - from.place.x);
    const double y = std::abs(to.place.y - from.place.y);
    if (x < kStraight && y > kStraight) from.isOnVertical = to.isOnVertical = true;
    if (y < kStraight && x > kStraight) from.isOnHorizontal = to.isOnHorizontal = true;
}

void markLines(Outline& outline) {
    std::vector<Node>& nodes = outline.nodes;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        if (!nodes[i].isCurve) markLine(nodes[i - 1], nodes[i]);
    }
    if (outline.isClosed) markLine(nodes.back(), nodes.front());
}

Node lineTo(const Place& place) {
    Node node;
    node.place = place;
    return node;
}

void add(std::vector<Outline>& outlines, const cairo_path_data_t* data, const DotGrid& grid) {
    switch (data->header.type) {
        case CAIRO_PATH_MOVE_TO:
            outlines.push_back({{lineTo(grid.dotsOf(data[1]))}, false});
            break;
        case CAIRO_PATH_LINE_TO:
            outlines.back().nodes.push_back(lineTo(grid.dotsOf(data[1])));
            break;
        case CAIRO_PATH_CURVE_TO: {
            Node node = lineTo(grid.dotsOf(data[3]));
            node.isCurve = true;
            node.controls = {grid.dotsOf(data[1]), grid.dotsOf(data[2])};
            outlines.back().nodes.push_back(node);
            break;
        }
        case CAIRO_PATH_CLOSE_PATH:
            outlines.back().isClosed = true;
            break;
    }
}

// The nearest place for the middle of a stroke of this many dots.
double alignedMiddle(double middle, int dots) {
    const double half = dots / 2.0;
    return std::floor(middle - half + 0.5) + half;
}

// True if two of the places are `distance` apart. Sorts them.
bool areSideBySide(std::vector<double>& places, double distance) {
    std::ranges::sort(places);
    for (std::size_t i = 1; i < places.size(); ++i) {
        if (std::abs(places[i] - places[i - 1] - distance) < distance / 50) return true;
    }
    return false;
}

bool isSame(double a, double b) {
    return std::abs(a - b) < 1e-3;
}

// True for the four corners of an upright rectangle; the first may come again as the last.
bool isRectangle(const Outline& outline) {
    const std::vector<Node>& nodes = outline.nodes;
    if (nodes.size() != 4 && nodes.size() != 5) return false;
    if (std::ranges::any_of(nodes, &Node::isCurve)) return false;
    const Place& a = nodes[0].place;
    const Place& b = nodes[1].place;
    const Place& c = nodes[2].place;
    const Place& d = nodes[3].place;
    const Place& last = nodes.size() == 5 ? nodes[4].place : a;
    return isSame(last.x, a.x) && isSame(last.y, a.y) &&
           ((isSame(a.x, b.x) && isSame(c.x, d.x) && isSame(a.y, d.y) && isSame(b.y, c.y)) ||
            (isSame(a.y, b.y) && isSame(c.y, d.y) && isSame(a.x, d.x) && isSame(b.x, c.x)));
}

// If the places of one direction are less than a dot apart, moves them to both sides of a dot and
// returns true.
bool widen(std::vector<Node>& nodes, double Place::*direction) {
    double low = nodes[0].place.*direction;
    double high = low;
    for (const Node& node : nodes) {
        low = std::min(low, node.place.*direction);
        high = std::max(high, node.place.*direction);
    }
    if (high - low >= 1 || high == low) return false;
    const double middle = (low + high) / 2;
    for (Node& node : nodes) {
        double& place = node.place.*direction;
        place = std::floor(middle) + (place < middle ? 0 : 1);
    }
    return true;
}

}  // namespace

std::vector<Outline> outlinesOf(cairo_t* context, int pixelsPerDot) {
    const std::unique_ptr<cairo_path_t, PathDeleter> path(cairo_copy_path(context));
    const DotGrid grid(context, pixelsPerDot);
    std::vector<Outline> outlines;
    for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
        add(outlines, path->data + i, grid);
    }
    std::ranges::for_each(outlines, markLines);
    return outlines;
}

void setOutlines(cairo_t* context, const std::vector<Outline>& outlines, int pixelsPerDot) {
    const DotGrid grid(context, pixelsPerDot);
    cairo_new_path(context);
    for (const Outline& outline : outlines) {
        const Place first = grid.userOf(outline.nodes.front().place);
        cairo_move_to(context, first.x, first.y);
        for (std::size_t i = 1; i < outline.nodes.size(); ++i) {
            const Node& node = outline.nodes[i];
            const Place end = grid.userOf(node.place);
            if (node.isCurve) {
                const Place one = grid.userOf(node.controls[0]);
                const Place two = grid.userOf(node.controls[1]);
                cairo_curve_to(context, one.x, one.y, two.x, two.y, end.x, end.y);
            } else {
                cairo_line_to(context, end.x, end.y);
            }
        }
        if (outline.isClosed) cairo_close_path(context);
    }
}

void alignStrokes(std::vector<Outline>& outlines, int dots) {
    for (Outline& outline : outlines) {
        for (Node& node : outline.nodes) {
            if (node.isOnVertical) node.place.x = alignedMiddle(node.place.x, dots);
            if (node.isOnHorizontal) node.place.y = alignedMiddle(node.place.y, dots);
        }
    }
}

bool formAnArea(const std::vector<Outline>& outlines, double width) {
    std::vector<double> columns;
    std::vector<double> rows;
    for (const Outline& outline : outlines) {
        for (const Node& node : outline.nodes) {
            if (node.isOnVertical) columns.push_back(node.place.x);
            if (node.isOnHorizontal) rows.push_back(node.place.y);
        }
    }
    return areSideBySide(columns, width) || areSideBySide(rows, width);
}

bool widenThinRectangle(Outline& outline) {
    if (!isRectangle(outline)) return false;
    const bool isWider = widen(outline.nodes, &Place::x);
    const bool isHigher = widen(outline.nodes, &Place::y);
    return isWider || isHigher;
}

}  // namespace tavio::pdf_helper
