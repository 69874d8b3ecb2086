#include <csignal>
#include <exception>
#include <new>
#include <variant>

#include "tools/tavio/commands.h"
#include "tools/tavio/console.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/options.h"

namespace {

int run(int argc, const char* const* argv) {
    using namespace tavio::tool;
    Console console(writeToStandardError, terminalDisplay());
    try {
        auto parsed = parseCommandLine(argc, argv);
        if (const int* status = std::get_if<int>(&parsed)) {
            flushStandardOutput();
            return *status;
        }
        runCommand(std::get<Options>(parsed), console);
        return 0;
    } catch (const Interrupted& interrupted) {
        console.fail(interrupted.what());
        return interrupted.exitStatus();
    } catch (const Failure& failure) {
        console.fail(failure.what());
    } catch (const std::bad_alloc&) {
        console.fail("there is not enough memory for this");
    } catch (const std::exception& error) {
        console.fail(error.what());
    }
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    // The write reports a closed pipe.
    std::signal(SIGPIPE, SIG_IGN);
    return run(argc, argv);
}
