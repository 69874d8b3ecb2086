// Codes as the virtual printer draws them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "printing/drawn_job.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "tavio/printing/job.h"

namespace tavio::test {

// 600 x 400 dots in landscape, 400 x 600 in portrait.
inline printing::TicketSettings ticketOf(
    printing::Orientation orientation = printing::Orientation::kLandscape) {
    return {
        .stock = printing::Stock::ofInches(3, 2), .resolution = 200, .orientation = orientation};
}

struct DrawnCode {
    printing::Rectangle rectangle;
    Rows rows;  // of the rectangle
};

// The only element of the ticket, and that nothing else is printed.
inline DrawnCode drawnCode(const printing::Ticket& ticket,
                           const printing::EncodeOptions& options = {}) {
    const auto job = printing::encode(ticket, options);
    EXPECT_EQ(told(job), Lines());
    if (!job) return {};
    const DrawnJob printed = drawn(*job);
    EXPECT_EQ(printed.problems, Lines());
    const virtual_printer::Ticket& paper = printed.tickets.at(0);
    DrawnCode element{job->elements()[0].rectangle.value_or(printing::Rectangle{}), {}};
    const auto& [left, top, size] = element.rectangle;
    element.rows.assign(static_cast<std::size_t>(size.height),
                        std::string(static_cast<std::size_t>(size.width), '.'));
    for (std::int64_t row = 0; row < paper.size().rows; ++row)
        for (std::int64_t column = 0; column < paper.size().columns; ++column) {
            if (!paper.isBlack(row, column)) continue;
            const bool isInside = row >= top && row < top + size.height && column >= left &&
                                  column < left + size.width;
            EXPECT_TRUE(isInside) << "row " << row << ", column " << column;
            if (isInside)
                element.rows[static_cast<std::size_t>(row - top)]
                            [static_cast<std::size_t>(column - left)] = 'X';
        }
    return element;
}

inline printing::CodeOptions ofModule(std::int32_t dots) {
    return {.size = printing::ModuleDots{dots}, .turn = printing::Turn::k0, .barReduction = {}};
}

// One letter a module; the picture must consist of squares of `module` dots.
inline Rows modulesOf(const Rows& rows, std::size_t module) {
    Rows modules;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        std::string line;
        for (std::size_t column = 0; column < rows[row].size(); ++column) {
            if (column % module == 0) line += rows[row][column];
            EXPECT_EQ(rows[row][column], line.back()) << "row " << row << ", column " << column;
        }
        if (row % module == 0) modules.push_back(line);
        EXPECT_EQ(line, modules.back()) << "row " << row;
    }
    return modules;
}

inline Rows turned(const Rows& rows, int quarterTurns) {
    if (quarterTurns == 0) return rows;
    Rows result(rows[0].size());
    for (std::size_t column = 0; column < rows[0].size(); ++column)
        for (std::size_t row = rows.size(); row > 0; --row) result[column] += rows[row - 1][column];
    return turned(result, quarterTurns - 1);
}

inline Rows withQuietZone(const Rows& symbol, std::size_t left, std::size_t right,
                          std::size_t above) {
    const std::size_t width = left + symbol[0].size() + right;
    Rows rows(above, std::string(width, '.'));
    for (const std::string& row : symbol)
        rows.push_back(std::string(left, '.') + row + std::string(right, '.'));
    rows.insert(rows.end(), above, std::string(width, '.'));
    return rows;
}

}  // namespace tavio::test
