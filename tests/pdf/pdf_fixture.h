// The fixture of all tests of PDF pages.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <dirent.h>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <string>
#include <sys/wait.h>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/platform/pdf_page.h"
#include "pdf/pdf_builder.h"

namespace tavio::platform {

// How googletest prints an outcome.
inline void PrintTo(PdfOutcome outcome, std::ostream* out) {
    *out << describe(outcome);
}

}  // namespace tavio::platform

namespace tavio::test {

inline std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

// Checks after each test that no file descriptor and no child process is left.
class PdfTest : public testing::Test {
  protected:
    void TearDown() override {
        EXPECT_EQ(openDescriptors(), before_);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child process is left";
        EXPECT_EQ(errno, ECHILD);
    }

    platform::PdfPageResult draw(const std::string& document,
                                 const platform::PdfLimits& limits = {},
                                 const std::string& helper = "") const {
        return platform::drawPdfPageWithHelper(folder_.write("document.pdf", document), limits,
                                               helper);
    }

    // The drawn page; a page of no pixels after a failure.
    platform::PdfPage drawn(const std::string& document) const {
        platform::PdfPageResult result = draw(document);
        EXPECT_EQ(result.outcome, platform::PdfOutcome::kDrawn);
        return result.page ? *std::move(result.page) : platform::PdfPage{};
    }

    DocumentFolder folder_;

  private:
    std::ptrdiff_t before_ = openDescriptors();
};

constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kBlack = 0xFF000000;

// The smallest rectangle of the canvas that holds every pixel that is not white.
struct Marks {
    int left = 0;
    int top = 0;
    int columns = 0;
    int rows = 0;
    bool solid = true;  // all pixels in it are black

    bool operator==(const Marks&) const = default;
};

inline void PrintTo(const Marks& marks, std::ostream* out) {
    *out << marks.columns << " x " << marks.rows << (marks.solid ? " solid" : " mixed")
         << " pixels at column " << marks.left << ", row " << marks.top;
}

inline Marks marksOn(const platform::PdfPage& page) {
    const pictures::Picture& picture = page.picture;
    int left = picture.width;
    int right = 0;
    int top = picture.height;
    int bottom = 0;
    int black = 0;
    for (int row = 0; row < picture.height; ++row) {
        for (int column = 0; column < picture.width; ++column) {
            const std::uint32_t pixel =
                picture.pixels[static_cast<std::size_t>(row * picture.width + column)];
            if (pixel == kWhite) continue;
            left = std::min(left, column);
            right = std::max(right, column + 1);
            top = std::min(top, row);
            bottom = std::max(bottom, row + 1);
            black += pixel == kBlack ? 1 : 0;
        }
    }
    if (right == 0) return {};
    const int columns = right - left;
    const int rows = bottom - top;
    return {page.left + left, page.top + top, columns, rows, black == columns * rows};
}

}  // namespace tavio::test
