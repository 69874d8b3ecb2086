// Pages in dots, drawn by the helper program.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/helper/shared_keepers.h"
#include "TavioIpadSDK/sharp/draw_page.h"
#include "pdf/pdf_fixture.h"

namespace tavio::test {

// All rows of a page.
struct PageDots {
    int width = 0;
    int height = 0;
    Bytes dots;

    Byte at(int column, int row) const {
        return dots.at(static_cast<std::size_t>(row * width + column));
    }
    std::ptrdiff_t count(Byte value) const { return std::ranges::count(dots, value); }
};

inline PageDots readAll(sharp::GreyRows& rows) {
    PageDots page{rows.width(), rows.height(), {}};
    while (true) {
        const std::span<const Byte> next = rows.next(7);
        if (next.empty()) return page;
        page.dots.insert(page.dots.end(), next.begin(), next.end());
    }
}

// A page of the size of its box in points, one dot a point unless the order says otherwise.
inline sharp::PageOrder atOwnSize(std::int32_t resolution = 72) {
    return {1, resolution, {sharp::Fit::kActual, sharp::Turn::k0, 1, 1}};
}

class SharpPageTest : public PdfTest {
  protected:
    void TearDown() override {
        helper::endKeepers();
        PdfTest::TearDown();
    }

    PageDots drawnDots(const std::string& document, const sharp::PageOrder& order) const {
        sharp::SharpPage page = sharp::drawPage(bytesOf(document), order);
        EXPECT_EQ(page.outcome, platform::PdfOutcome::kDrawn);
        if (!page.rows) return {};
        EXPECT_EQ(page.rows->width(), page.fitted.windowWidth);
        EXPECT_EQ(page.rows->height(), page.fitted.windowHeight);
        return readAll(*page.rows);
    }
};

// The smallest rectangle of dots that are not white.
inline Marks marksOn(const PageDots& page) {
    Marks marks{page.width, page.height, 0, 0, true};
    int right = 0;
    int bottom = 0;
    for (int row = 0; row < page.height; ++row) {
        for (int column = 0; column < page.width; ++column) {
            if (page.at(column, row) == 255) continue;
            marks.left = std::min(marks.left, column);
            marks.top = std::min(marks.top, row);
            right = std::max(right, column + 1);
            bottom = std::max(bottom, row + 1);
        }
    }
    if (right == 0) return {};
    marks.columns = right - marks.left;
    marks.rows = bottom - marks.top;
    marks.solid = page.count(0) == static_cast<std::ptrdiff_t>(marks.columns) * marks.rows;
    return marks;
}

}  // namespace tavio::test
