#include <csignal>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <unistd.h>

#include "tools/tavio/command_line.h"
#include "tools/tavio/command_list.h"
#include "tools/tavio/commands.h"
#include "tools/tavio/console.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"

namespace {

using namespace tavio::tool;

// A closed standard descriptor would become a file or a socket of the job. It is opened so that using
// it still fails.
void occupyStandardDescriptors() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(number, F_GETFD) >= 0) continue;
        const int opened = ::open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        if (opened < 0) return;
    }
}

int runReported(const Options& options, Report& report) {
    Notice problem{.kind = "failed", .sentence = ""};
    try {
        return runCommand(options, report);
    } catch (const Failure& failure) {
        problem = {.kind = failure.kind(), .sentence = failure.what()};
    } catch (const std::bad_alloc&) {
        problem = {.kind = "over-memory", .sentence = "there is not enough memory for this"};
    } catch (const std::exception& error) {
        problem.sentence = error.what();
    }
    report.problem(problem);
    return static_cast<int>(report.isDone() ? ExitStatus::kFailedAfterwards
                                            : ExitStatus::kNothingSent);
}

// Writes what is left for standard output; returns the status that comes of it.
int finish(int status, Report& report) {
    report.console().clear();
    if (report.isJson()) std::cout << report.object(status) << '\n';
    try {
        flushStandardOutput();
        return status;
    } catch (const Failure& failure) {
        report.console().fail(failure.what());
    }
    if (status != 0) return status;
    return static_cast<int>(report.isDone() ? ExitStatus::kFailedAfterwards
                                            : ExitStatus::kNothingSent);
}

bool asksForJson(const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        if (word == "--") return false;
        if (word == "--json") return true;
    }
    return false;
}

int refuse(const std::vector<std::string>& words, const std::string& sentence, Console& console) {
    Report report(console, "", asksForJson(words));
    report.problem({.kind = "usage", .sentence = sentence});
    return finish(static_cast<int>(ExitStatus::kUsage), report);
}

int run(const std::vector<std::string>& words) {
    Console console(writeToStandardError, terminalDisplay());
    if (words == std::vector<std::string>{"--version"}) {  // needs no table of commands
        std::cout << kVersion << '\n';
        Report report(console, "", false);
        return finish(0, report);
    }
    Options options;
    CommandLine commandLine(toolCommands(options), options);
    const Reading reading = commandLine.read(words);
    if (reading.end == Reading::End::kWrong) return refuse(words, reading.text, console);
    if (reading.end == Reading::End::kShown) {
        std::cout << reading.text;
        Report report(console, "", false);
        return finish(0, report);
    }
    if (const std::string wrong = contradictionIn(options); !wrong.empty()) {
        return refuse(words, wrong, console);
    }
    Report report(console, nameOf(options.command), options.json);
    return finish(runReported(options, report), report);
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);  // the write reports a closed pipe
    occupyStandardDescriptors();
    return run({argv + (argc > 0 ? 1 : 0), argv + argc});
}
