#include <exception>
#include <iostream>
#include <new>
#include <unistd.h>
#include <variant>

#include "tools/tavio-printer/line_output.h"
#include "tools/tavio-printer/options.h"
#include "tools/tavio-printer/program.h"

namespace {

void fail(const std::string& sentence) {
    tavio::virtual_printer::LineOutput(STDERR_FILENO).write("tavio-printer: " + sentence);
}

int run(int argc, const char* const* argv) {
    using namespace tavio::virtual_printer;
    try {
        const auto parsed = parseCommandLine(argc, argv);
        if (const int* status = std::get_if<int>(&parsed)) {
            std::cout.flush();
            return *status;
        }
        runProgram(std::get<Options>(parsed));
        return 0;
    } catch (const std::bad_alloc&) {
        fail("there is not enough memory for this");
    } catch (const std::exception& error) {
        fail(error.what());
    }
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    tavio::virtual_printer::takeSignals();
    return run(argc, argv);
}
