#include "tools/tavio/job_command.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "tavio/printing/calibration_page.h"
#include "tools/tavio/composer.h"
#include "tools/tavio/delivery.h"
#include "tools/tavio/encoding.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"
#include "tools/tavio/interrupts.h"
#include "tools/tavio/script.h"
#include "tools/tavio/ticket_json.h"

namespace tavio::tool {

namespace {

constexpr std::uint64_t kMaxScriptBytes = std::uint64_t{16} << 20U;

// Composes the commands of a script; returns what is wrong with its lines.
std::vector<Notice> composeScript(const std::string& path, const Settings& settings,
                                  Composer& composer) {
    InputFile file(path);
    if (isStandardInput(path)) composer.withoutStandardInput("standard input is the script itself");
    const Bytes bytes = file.rest(kMaxScriptBytes);
    const Script script =
        readScript({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, settings);
    if (script.lines.empty() && script.wrong.empty())
        throw Failure(file.name() + " has no command");
    std::vector<Notice> wrong;
    for (const WrongLine& line : script.wrong) {
        wrong.push_back({.kind = "usage", .sentence = line.sentence, .line = line.number});
    }
    for (const ScriptLine& line : script.lines) {
        try {
            composer.add(line.options, line.number);
        } catch (const Failure& failure) {
            wrong.push_back(
                {.kind = failure.kind(), .sentence = failure.what(), .line = line.number});
        }
    }
    return wrong;
}

// Returns why there is no page.
std::vector<Notice> composeCalibration(const Options& options, const Settings& settings,
                                       const Destination& destination, Composer& composer) {
    auto page = printing::calibrationPage(ticketSettings(settings), destination.calibration);
    if (!page) return {{.kind = nameOf(page.error().kind), .sentence = page.error().sentence}};
    composer.add(std::move(*page), options.finish);
    return {};
}

std::vector<Notice> compose(const Options& options, const Destination& destination,
                            Composer& composer) {
    const Settings settings = options.settings.over(destination.settings);
    if (options.command == Command::kRun) {
        return composeScript(options.files.front(), settings, composer);
    }
    if (options.command == Command::kCalibrate)
        return composeCalibration(options, settings, destination, composer);
    Options command = options;
    command.settings = settings;
    composer.add(command);
    return {};
}

void tellProblems(std::vector<Notice> problems, Report& report) {
    std::stable_sort(problems.begin(), problems.end(), [](const Notice& left, const Notice& right) {
        return left.line < right.line;
    });
    for (const Notice& problem : problems) report.problem(problem);
}

// Documents of more tickets are encoded while they are sent: the first need not wait for the last, and
// few are in memory. Any other job is sent only if all of it can be encoded.
constexpr std::size_t kMaxWholeTickets = 16;

bool isSeries(const Options& options, const Composer& composer, const Destination& destination) {
    return options.command == Command::kPrint && isPrinter(destination.target) &&
           composer.tickets().size() > kMaxWholeTickets;
}

// A file that is missing is told before the first ticket is sent.
void checkFiles(const Options& options) {
    for (const std::string& path : options.files) {
        if (!isStream(path)) InputFile{path};
    }
}

// Composes the job, and encodes it if it is no series. None if something is wrong, which has been
// told, or of a series. A signal ends the program.
std::optional<printing::Job> composeJob(const Options& options, const Destination& destination,
                                        Composer& composer, std::vector<Notice>& problems,
                                        Report& report) {
    const ExitOnSignal interrupts(report.lastWords());
    report.console().stage("reading");
    problems = compose(options, destination, composer);
    std::optional<printing::Job> job;
    if (!problems.empty() || !isSeries(options, composer, destination))
        job = encodeTickets(composer, destination, report.console(), problems);
    if (!problems.empty()) tellProblems(problems, report);
    return job;
}

int runSeries(const Composer& composer, const Destination& destination, const Options& options,
              Report& report) {
    checkFiles(options);
    report.member("target", command_line::jsonText(destination.name));
    const SeriesDelivery delivery = printSeries(composer, destination, options, report);
    report.member("tickets",
                  ticketsJson(composer, delivery.result.elements, delivery.result.print.elements));
    return delivery.status;
}

int runWhole(const printing::Job& job, const Composer& composer, const Destination& destination,
             const Options& options, Report& report) {
    for (const Notice& note : composer.notes()) report.warning(note);
    // Small modules are what the page of "calibrate" is about.
    const bool mayBeSmall = options.command == Command::kCalibrate;
    for (const Notice& warning : warningsOf(job.warnings(), composer)) {
        const bool isSmall = warning.kind == nameOf(printing::WarningKind::kSmallModule);
        if (!(mayBeSmall && isSmall)) report.warning(warning);
    }
    const Delivery delivery = deliver(job, destination, options, report);
    report.member("tickets", ticketsJson(composer, job.elements(), delivery.fates));
    return delivery.status;
}

}  // namespace

int runJob(const Options& options, Report& report) {
    report.outcome(printing::nameOf(links::Outcome::kNothingSent));
    const Destination destination = destinationOf(options);
    Composer composer(replacedFile(destination.target));
    std::vector<Notice> problems;
    const auto job = composeJob(options, destination, composer, problems, report);
    if (job) return runWhole(*job, composer, destination, options, report);
    if (!isSeries(options, composer, destination) || !problems.empty())
        return static_cast<int>(ExitStatus::kNothingSent);
    return runSeries(composer, destination, options, report);
}

}  // namespace tavio::tool
