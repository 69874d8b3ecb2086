#include "TavioIpadSDK/sharp/find_data_matrix.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tavio::sharp {

namespace {

// The shortest side has 8 modules of 1.4 dots.
constexpr std::int32_t kMinSide = 11;

// Modules of the sides, the longer one first.
struct Size {
    std::int32_t longSide;
    std::int32_t shortSide;
};
constexpr std::array<Size, 30> kSizes{
    {{10, 10}, {12, 12}, {14, 14}, {16, 16}, {18, 18},   {20, 20},   {22, 22},   {24, 24},
     {26, 26}, {32, 32}, {36, 36}, {40, 40}, {44, 44},   {48, 48},   {52, 52},   {64, 64},
     {72, 72}, {80, 80}, {88, 88}, {96, 96}, {104, 104}, {120, 120}, {132, 132}, {144, 144},
     {18, 8},  {32, 8},  {26, 12}, {36, 12}, {36, 16},   {48, 16}}};

bool isSize(std::int32_t columns, std::int32_t rows) {
    return std::ranges::any_of(kSizes, [&](const Size& size) {
        return size.longSide == std::max(columns, rows) &&
               size.shortSide == std::min(columns, rows);
    });
}

// A line of dots: from a dot, one step at a time.
struct Line {
    std::int32_t column;
    std::int32_t row;
    std::int32_t right;  // the step: -1, 0 or 1
    std::int32_t down;

    std::int32_t columnAt(std::int32_t steps) const { return column + steps * right; }
    std::int32_t rowAt(std::int32_t steps) const { return row + steps * down; }
};

// A step to the side.
struct Outwards {
    std::int32_t right;
    std::int32_t down;
};

// The number of dots from the line's beginning that are black beside white ones.
std::int32_t solidLength(const DotsView& view, const Line& line, const Outwards& outwards) {
    std::int32_t length = 0;
    while (
        view.isBlack(line.columnAt(length), line.rowAt(length)) &&
        !view.isBlack(line.columnAt(length) + outwards.right, line.rowAt(length) + outwards.down)) {
        ++length;
    }
    return length;
}

// The number of modules along a line of `length` dots, black and white in turn, black first; 0 if they
// are not all alike.
std::int32_t countModules(const DotsView& view, const Line& line, std::int32_t length) {
    std::vector<std::int32_t> changes{0};
    bool isBlack = true;
    for (std::int32_t step = 0; step < length; ++step) {
        if (view.isBlack(line.columnAt(step), line.rowAt(step)) == isBlack) continue;
        if (step == 0) return 0;
        isBlack = !isBlack;
        changes.push_back(step);
    }
    changes.push_back(length);
    const auto modules = static_cast<std::int32_t>(changes.size()) - 1;
    const double module = static_cast<double>(length) / modules;
    for (std::size_t i = 1; i < changes.size(); ++i) {
        if (std::abs(changes[i] - changes[i - 1] - module) > std::max(1.0, 0.4 * module)) return 0;
    }
    return modules;
}

// An upright solid side: its dots at the outside.
struct Side {
    std::int32_t column;
    std::int32_t top;
    std::int32_t bottom;   // the last row
    std::int32_t inwards;  // 1: the code is to its right, -1: to its left
};

// The module of the code whose solid sides are this one and one at its lower end, or its upper.
std::optional<double> moduleAt(const DotsView& view, const Side& side, bool isLower) {
    const std::int32_t height = side.bottom - side.top + 1;
    const std::int32_t corner = isLower ? side.bottom : side.top;
    const std::int32_t opposite = isLower ? side.top : side.bottom;
    const std::int32_t outwards = isLower ? 1 : -1;
    const std::int32_t width =
        solidLength(view, {side.column, corner, side.inwards, 0}, {.right = 0, .down = outwards});
    if (width < kMinSide) return std::nullopt;
    const std::int32_t columns =
        countModules(view, {side.column, opposite, side.inwards, 0}, width);
    if (columns == 0) return std::nullopt;
    const std::int32_t farColumn = side.column + side.inwards * (width - 1);
    const std::int32_t rows = countModules(view, {farColumn, corner, 0, -outwards}, height);
    if (!isSize(columns, rows)) return std::nullopt;
    return std::min(static_cast<double>(width) / columns, static_cast<double>(height) / rows);
}

// The module of the code that has an upright solid side at a dot, with white before it.
std::optional<double> moduleBeside(const DotsView& view, std::int32_t column, std::int32_t row,
                                   std::int32_t inwards) {
    const Outwards outwards{.right = -inwards, .down = 0};
    const std::int32_t up = solidLength(view, {column, row, 0, -1}, outwards);
    const std::int32_t down = solidLength(view, {column, row, 0, 1}, outwards);
    if (up + down - 1 < kMinSide) return std::nullopt;
    const Side side{
        .column = column, .top = row - up + 1, .bottom = row + down - 1, .inwards = inwards};
    std::optional<double> module = moduleAt(view, side, true);
    return module ? module : moduleAt(view, side, false);
}

}  // namespace

std::optional<double> moduleOfDataMatrix(const DotsView& view, std::int32_t row, const Edges& edges,
                                         const Edges& before) {
    std::optional<double> narrowest;
    auto next = before.begin();
    for (std::size_t i = 0; i < edges.size(); ++i) {
        while (next != before.end() && *next < edges[i]) ++next;
        const bool isLeft = i % 2 == 0;
        const bool wasLeft = (next - before.begin()) % 2 == 0;
        if (next != before.end() && *next == edges[i] && wasLeft == isLeft) continue;
        const std::int32_t column = isLeft ? edges[i] : edges[i] - 1;
        const std::optional<double> module = moduleBeside(view, column, row, isLeft ? 1 : -1);
        if (module && (!narrowest || *module < *narrowest)) narrowest = module;
    }
    return narrowest;
}

}  // namespace tavio::sharp
