// Real documents, whole and damaged.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pdf/pdf_fixture.h"

namespace tavio::test {
namespace {

using platform::PdfLimits;
using platform::PdfOutcome;
using platform::PdfPage;
using platform::PdfPageResult;
using platform::Url;

const PdfLimits kLimits{.cpu = std::chrono::seconds(5), .wall = std::chrono::seconds(20)};

std::vector<std::filesystem::path> corpus() {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(TAVIO_CORPUS_DIR "/pdf", error)) {
        if (entry.path().extension() == ".pdf") files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

void expectConsistent(const PdfPageResult& result) {
    ASSERT_EQ(result.page.has_value(), result.outcome == PdfOutcome::kDrawn);
    if (!result.page) return;
    const PdfPage& page = *result.page;
    EXPECT_EQ(page.left, std::floor(page.x));
    EXPECT_EQ(page.top, std::floor(-page.y));
    EXPECT_EQ(page.picture.width, std::ceil(page.x + page.width) - page.left);
    EXPECT_EQ(page.picture.height, std::ceil(page.height - page.y) - page.top);
    EXPECT_TRUE(std::ranges::all_of(page.picture.pixels, [](auto p) { return p >> 24 == 255; }));
}

class PdfCorpus : public PdfTest {
  protected:
    void SetUp() override {
        if (files_.empty()) GTEST_SKIP() << "no sample documents on this machine";
    }
    const std::vector<std::filesystem::path> files_ = corpus();
};

TEST_F(PdfCorpus, IsDrawnOrRefusedWithAReason) {
    std::map<std::string, PdfOutcome> outcomes;
    for (const std::filesystem::path& file : files_) {
        SCOPED_TRACE(file.filename());
        const auto result = drawPdfPageWithHelper(Url::fromPath(file.string()), kLimits);
        expectConsistent(result);
        outcomes[file.filename()] = result.outcome;
        EXPECT_NE(result.outcome, PdfOutcome::kUnreadable);
        EXPECT_NE(result.outcome, PdfOutcome::kHelperMissing);
        EXPECT_NE(result.outcome, PdfOutcome::kHelperFailed);
    }
    for (const auto& [name, outcome] : outcomes) {
        std::cout << name << " -> " << describe(outcome) << "\n";
    }
}

// Cuts the document short and changes some bytes.
std::string damaged(std::string document, std::mt19937& random) {
    const std::size_t size = document.size();
    if (size == 0) return document;
    const auto place = [&] { return std::size_t{random()} % size; };
    if (random() % 3 == 0) document.resize(place());
    for (auto changes = random() % 30; changes > 0; --changes) {
        const std::size_t at = place();
        if (at < document.size()) document[at] = static_cast<char>(random());
    }
    return document;
}

TEST_F(PdfCorpus, IsDrawnOrRefusedAlsoWhenDamaged) {
    constexpr std::uint32_t kSeed = 20240917;
    std::mt19937 random(kSeed);
    for (int round = 0; round < 150; ++round) {
        const std::filesystem::path& file = files_[random() % files_.size()];
        SCOPED_TRACE(file.filename().string() + ", round " + std::to_string(round) + ", seed " +
                     std::to_string(kSeed));
        std::ifstream stream(file, std::ios::binary);
        const std::string whole{std::istreambuf_iterator<char>(stream),
                                std::istreambuf_iterator<char>()};
        stream.close();
        const auto result = draw(damaged(whole, random), kLimits);
        expectConsistent(result);
        EXPECT_NE(result.outcome, PdfOutcome::kUnreadable);
        EXPECT_NE(result.outcome, PdfOutcome::kHelperMissing);
    }
}

}  // namespace
}  // namespace tavio::test
