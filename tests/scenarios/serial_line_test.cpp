// On a serial line there are no connections that a printer could tell apart: what one job left
// unfinished, the next one continues. These tests say what becomes of it, and what helps.

#include <functional>
#include <set>

#include <gtest/gtest.h>

#include "scenarios/real_jobs.h"
#include "scenarios/sample_jobs.h"

namespace tavio::scenarios {
namespace {

using virtual_printer::FinishedTicket;
using virtual_printer::Printer;
using virtual_printer::PrinterSettings;

const PrinterSettings kSettings{kTicketSize};

constexpr std::size_t kMaxRun = 30;  // of the graphics below

// A job in pieces that a printer takes one by one: commands, graphics, and a logo. The numbers are
// those of its bytes.
struct SampleJob {
    Bytes bytes;
    std::set<std::size_t> betweenCommands;
    std::size_t drawn = 0;  // from here on there are dots on the ticket
    std::size_t graphicsBegin = 0;
    std::size_t graphicsEnd = 0;
    std::size_t logoBegin = 0;
    std::size_t logoEnd = 0;

    void add(std::string_view command) {
        betweenCommands.insert(bytes.size());
        append(bytes, command);
    }
};

SampleJob sampleJob() {
    SampleJob job;
    for (const char* command : {"<P1>", "<LM>", "<RE0>", "<DI>", "<RC10,20>", "<G30>"}) {
        job.add(command);
    }
    job.drawn = job.graphicsBegin = job.bytes.size();
    job.bytes.resize(job.bytes.size() + kMaxRun, 0x5A);
    job.graphicsEnd = job.bytes.size();
    job.add("<7>\x1b");
    job.logoBegin = job.bytes.size();
    append(job.bytes, graphics(0, 0, 20, 7));
    job.logoEnd = job.bytes.size();
    append(job.bytes, "\x1b");
    for (const char* command : {"<SP40,30>", "<LD7>", "<p>"}) job.add(command);
    return job;
}

// Printed after a job that was cut.
Bytes nextJob() {
    Bytes job = bytesOf("<P1><LM><RE0><DI>");
    append(job, graphics(60, 100, 30, 5));
    append(job, "<p>");
    return job;
}

std::vector<Dots> printed(std::initializer_list<std::span<const Byte>> parts,
                          const PrinterSettings& settings = kSettings) {
    Bytes line;
    for (const std::span<const Byte> part : parts) append(line, part);
    std::vector<Dots> tickets;
    Printer printer(settings, [&](const FinishedTicket& finished) {
        tickets.push_back(dotsOf(finished.ticket));
    });
    printer.feed(line);
    return tickets;
}

// True if the next job prints correctly after the first one was cut at `place` and `between` was sent.
bool heals(std::size_t place, std::string_view between) {
    const Bytes first = sampleJob().bytes;
    const Bytes next = nextJob();
    const auto tickets = printed({std::span(first).first(place), bytesOf(between), next});
    return !tickets.empty() && tickets.back() == printed({next}).front();
}

void expectHealing(std::string_view between, const std::function<bool(std::size_t)>& expected) {
    for (std::size_t place = 0; place <= sampleJob().bytes.size(); ++place) {
        EXPECT_EQ(heals(place, between), expected(place)) << "cut after " << place << " bytes";
    }
}

TEST(SerialLine, OnASerialLineAHalfGraphicsCommandSwallowsTheNextJobsBeginning) {
    Bytes half = bytesOf("<RC0,0><G40>");
    half.resize(half.size() + 10, 0);
    // The 30 bytes that are missing are all of the first command and graphics here.
    const Bytes swallowed = bytesOf("<P1><RC10,20><G12>************");
    ASSERT_EQ(swallowed.size(), 30U);
    const Bytes rest = bytesOf("<RC50,60><G5>*****<p>");
    const Bytes asGraphics = [&] {
        Bytes bytes = bytesOf("<RC0,10><G30>");
        append(bytes, swallowed);
        return bytes;
    }();
    EXPECT_EQ(printed({half, swallowed, rest}), printed({asGraphics, rest}));
    EXPECT_NE(printed({half, swallowed, rest}), printed({swallowed, rest}));
}

TEST(SerialLine, OnASerialLineAJobHealsByItselfOnlyBetweenCommandsOfABlankTicket) {
    const SampleJob job = sampleJob();
    expectHealing("", [&](std::size_t place) {
        if (place == job.bytes.size()) return true;
        return place < job.drawn && job.betweenCommands.contains(place);
    });
}

TEST(SerialLine, OnASerialLineClearingTheMemoryDoesNotHelp) {
    const SampleJob job = sampleJob();
    for (std::size_t place = job.graphicsBegin; place < job.bytes.size(); ++place) {
        EXPECT_FALSE(heals(place,
                           "\x1b"
                           "c"))
            << "cut after " << place << " bytes";
    }
}

TEST(SerialLine, OnASerialLineACutInFrontHelpsButForHalfGraphicsAndHalfLogos) {
    const SampleJob job = sampleJob();
    expectHealing("<p>", [&](std::size_t place) {
        const bool inGraphics = place >= job.graphicsBegin && place < job.graphicsEnd;
        const bool inLogo = place >= job.logoBegin && place <= job.logoEnd;
        return !inGraphics && !inLogo;
    });
}

// Blanks complete graphics that lack bytes, ESC ends a logo, and the cut brings out the unfinished
// ticket.
TEST(SerialLine, OnASerialLineBlanksAnEscAndACutInFrontHealEverything) {
    const std::string cleanCut = std::string(kMaxRun, ' ').append("\x1b<p>");
    expectHealing(cleanCut, [](std::size_t) { return true; });
    const std::string tooShort = std::string(kMaxRun / 2, ' ').append("\x1b<p>");
    EXPECT_FALSE(heals(sampleJob().graphicsBegin, tooShort));
}

TEST(SerialLine, OnASerialLineALogoEndedSoIsStoredAsFarAsItCame) {
    const SampleJob job = sampleJob();
    const Bytes cleanCut = bytesOf(std::string(kMaxRun, ' ').append("\x1b<p>"));
    const Bytes printLogo = bytesOf("<SP40,30><LD7><p>");
    const auto half = std::span(job.bytes).first(job.logoEnd - 10);
    const auto tickets = printed({half, cleanCut, printLogo});
    EXPECT_NE(tickets.back(), printed({printLogo}).back());
    EXPECT_NE(tickets.back(), printed({job.bytes, printLogo}).back());
    EXPECT_EQ(printed({half, cleanCut, job.bytes}).back(), printed({job.bytes}).back());
}

TEST(SerialLine, OnASerialLineARealJobAfterBlanksAnEscAndACutIsWhole) {
    const RealJob job = storedLogoJob();
    // None of its graphics are longer than the ticket.
    const auto longest = static_cast<std::size_t>(job.settings.size.columns);
    const Bytes cleanCut = bytesOf(std::string(longest, ' ').append("\x1b<p>"));
    const auto expected = printed({job.bytes}, job.settings).back();
    for (std::size_t place = 0; place <= job.bytes.size(); place += 7) {
        const auto half = std::span(job.bytes).first(place);
        ASSERT_TRUE(printed({half, cleanCut, job.bytes}, job.settings).back() == expected) << place;
    }
}

}  // namespace
}  // namespace tavio::scenarios
