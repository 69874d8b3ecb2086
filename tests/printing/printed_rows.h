// The dots of a printed ticket as text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "printing/drawn_job.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "tavio/printing/job.h"

namespace tavio::test {

// The upright ticket's dots: 'X' is black, '.' white.
inline Rows rowsOf(const virtual_printer::Ticket& paper) {
    Rows rows;
    for (std::int32_t row = 0; row < paper.size().rows; ++row) {
        rows.emplace_back();
        for (std::int32_t column = 0; column < paper.size().columns; ++column)
            rows.back() += paper.isBlack(row, column) ? 'X' : '.';
    }
    return rows;
}

inline Rows printedRows(const printing::Ticket& ticket,
                        const printing::EncodeOptions& options = {}) {
    const auto job = encode(ticket, options);
    EXPECT_EQ(told(job), Lines());
    if (!job) return {};
    const DrawnJob printed = drawn(*job);
    EXPECT_EQ(printed.problems, Lines());
    return rowsOf(printed.tickets.at(0));
}

// A part of a ticket, which must lie on it.
inline Rows part(const Rows& rows, std::size_t left, std::size_t top, std::size_t width,
                 std::size_t height) {
    Rows cut;
    for (std::size_t row = top; row < top + height; ++row)
        cut.push_back(rows.at(row).substr(left, width));
    return cut;
}

inline std::size_t blackDots(const Rows& rows) {
    std::size_t count = 0;
    for (const std::string& row : rows)
        count += static_cast<std::size_t>(std::ranges::count(row, 'X'));
    return count;
}

}  // namespace tavio::test
