// Every allocation fails once: there is the whole job, or a problem that says so.

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/words/answer.h"
#include "intake/picture_files.h"
#include "pictures/sample_pictures.h"
#include "printing/failing_memory.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "support/temporary_folder.h"
#include "tavio/printing/document_info.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::FailingMemory;
using test::Failure;

Bytes interlacedPng() {
    pictures::samples::PngPlan plan;
    plan.width = plan.height = 16;
    plan.interlaced = true;
    plan.samples.assign(std::size_t{16} * 16 * 4, 90);
    return pictures::samples::pngFile(plan);
}

Bytes jpeg() {
    pictures::samples::JpegPlan plan;
    plan.app1 = {pictures::samples::exifApp1(6, true)};
    plan.samples.assign(std::size_t{16} * 16 * 3, 90);
    return pictures::samples::jpegFile(plan);
}

// Calls the function with each of its allocations failing, until none does.
template <typename Call>
void withEachFailure(Call call) {
    for (const Failure failure : {Failure::kOnce, Failure::kFromThenOn}) {
        bool hasFailed = true;
        for (std::int64_t number = 0; hasFailed; ++number) {
            SCOPED_TRACE(testing::Message()
                         << "allocation " << number
                         << (failure == Failure::kOnce ? "" : " and all others"));
            hasFailed = call(number, failure);
            if (testing::Test::HasFatalFailure()) return;
            ASSERT_LT(number, 100'000);
        }
    }
}

void expectOverMemory(const Problems& problems) {
    for (const Problem& problem : problems)
        EXPECT_EQ(problem.kind, ProblemKind::kOverMemory) << problem.sentence;
}

class Memory : public testing::Test {
  protected:
    Memory() {
        test::writeFile(folder_ / "text.txt", "Row F");
        options_.pageEngine = [](const Source&, std::int32_t) {
            return DrawnPage{
                {platform::PdfOutcome::kDrawn,
                 platform::PdfPage{0, 0, 9, 9, 0, 0, test::plainPicture(9, 9, 0, 0, 0)}},
                3};
        };
        ticket_.picture(Source::bytes(test::greyPng(test::allBlack(20, 9), 6), "a.png"))
            .picture(Source::bytes(test::blackBmp(20, 9), "a.bmp"), {-1, 0}, {.classic = Classic{}})
            .picture(Source::bytes(interlacedPng(), "b.png"))
            .document(Source::bytes(jpeg(), "a.jpg"))
            .picture(std::make_shared<const platform::Picture>(test::plainPicture(9, 9, 0, 0, 0)),
                     {}, {.blackAndWhite = BlackAndWhite::kThreshold})
            .page(Source::bytes(Bytes(), "a.pdf"))
            .text("Row F, seat 12 of a hall with a long name", {1, 2})
            .printerText(Source::file(folder_ / "text.txt"))
            .storeLogo(7, Source::bytes(jpeg(), "b.jpg"))
            .logo(7)
            .finish(Finish::kCut);
    }

    // How many of the ticket's allocations, each failing alone and with all after it, leave no job. All
    // others leave the whole one.
    int refusalsOf(const Ticket& ticket) const {
        const Job whole = *encode(ticket, options_);
        int refused = 0;
        withEachFailure([&](std::int64_t number, Failure failure) {
            std::optional<Expected<Job, Problems>> job;
            bool hasFailed = false;
            {
                const FailingMemory failing(number, failure);
                job.emplace(encode(ticket, options_));
                hasFailed = FailingMemory::hasFailed();
            }
            if (*job) {
                EXPECT_TRUE(std::ranges::equal((*job)->bytes(), whole.bytes()));
                EXPECT_EQ((*job)->elements().size(), whole.elements().size());
                EXPECT_EQ(test::told((*job)->warnings()), test::told(whole.warnings()));
            } else {
                expectOverMemory(job->error());
                ++refused;
            }
            return hasFailed;
        });
        return refused;
    }

    test::TemporaryFolder folder_;
    Ticket ticket_;
    EncodeOptions options_;
};

TEST_F(Memory, ThatFailsGivesAWholeJobOrAProblem) {
    EXPECT_GT(refusalsOf(ticket_), 100);
}

// A program that answers with words of one row, all black.
std::string wordsHelper(const test::TemporaryFolder& folder) {
    words::AnswerHeader header;
    header.outcome = words::Answer::kDrawn;
    header.width = 64;
    header.height = header.hasInk = 1;
    header.size = 9;
    const std::string bytes(reinterpret_cast<const char*>(&header), sizeof(header));
    test::writeFile(folder / "answer", bytes + std::string(8, '\xFF'));
    test::writeFile(folder / "helper", "#!/bin/sh\nexec cat '" + folder / "answer" + "'\n");
    std::filesystem::permissions(folder / "helper", std::filesystem::perms::owner_all);
    return folder / "helper";
}

TEST_F(Memory, ThatFailsGivesTheWordsOrAProblem) {
    options_.wordsHelper = wordsHelper(folder_);
    const WordsOptions words{.size = 9, .box = Size{1, 64}, .turn = Turn::k90};
    EXPECT_GT(refusalsOf(Ticket().words("Row F, seat 12 of a hall with a long name", {}, words)),
              10);
}

TEST_F(Memory, ThatFailsGivesAnInspectionOrAProblem) {
    for (const Bytes& file : {jpeg(), test::bytesOf("%PDF-1.7"), test::bytesOf("Row F")}) {
        const Source source = Source::bytes(file, "a file with a long name");
        withEachFailure([&](std::int64_t number, Failure failure) {
            std::optional<Expected<DocumentInfo, Problems>> info;
            bool hasFailed = false;
            {
                const FailingMemory failing(number, failure);
                info.emplace(inspect(source, {}, {}, {}, options_));
                hasFailed = FailingMemory::hasFailed();
            }
            if (!*info) expectOverMemory(info->error());
            return hasFailed;
        });
    }
}

TEST_F(Memory, ThatFailsWhileATicketIsComposedIsAProblemOfEncoding) {
    withEachFailure([&](std::int64_t number, Failure failure) {
        Ticket ticket;
        std::string text = "Row F, seat 12 of a hall with a long name";
        Bytes file = test::blackBmp(32, 8);
        bool hasFailed = false;
        {
            const FailingMemory failing(number, failure);
            ticket.text(std::move(text), {})
                .picture(Source::bytes(std::move(file)))
                .finish(Finish::kCut);
            hasFailed = FailingMemory::hasFailed();
        }
        const auto job = encode(ticket);
        EXPECT_EQ(job.has_value(), !hasFailed);
        if (!job) expectOverMemory(job.error());
        return hasFailed;
    });
}

}  // namespace
}  // namespace tavio::printing
