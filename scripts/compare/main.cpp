// Runs random jobs through the library that this program was built with, and prints a hash of each
// job's record. Two libraries that do the same give the same lines.
//
//   compare-driver jobs SEED FIRST LAST EXAMPLES         a line with number and hash for each job
//   compare-driver record SEED FIRST LAST EXAMPLES       the whole record of the last one
//   compare-driver documents SEED COUNT                  random documents, into the current folder
#include <charconv>
#include <cstdint>
#include <exception>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "documents.h"
#include "job.h"
#include "record.h"
#include "sources.h"
#include "work_folder.h"

namespace compare {
namespace {

struct Range {
    std::uint64_t seed = 0;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
};

// Throws where the text is no number.
std::uint64_t asNumber(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::invalid_argument("\"" + std::string(text) + "\" is no number");
    return number;
}

Random randomOf(std::uint64_t seed, std::uint64_t number) {
    return Random(hashOf(std::to_string(seed) + "/" + std::to_string(number)));
}

void runNumbered(const Range& range, std::uint64_t number, const std::string& examples) {
    record().clear();
    Random random = randomOf(range.seed, number);
    runJob(random, examples);
}

// Each line is out before the next job begins: after a crash the last one tells where it was.
void runJobs(const Range& range, const std::string& examples) {
    for (std::uint64_t number = range.first; number <= range.last; ++number) {
        runNumbered(range, number, examples);
        std::cout << number << ' ' << std::hex << record().hash() << std::dec << std::endl;
    }
}

void showLast(const Range& range, const std::string& examples) {
    for (std::uint64_t number = range.first; number <= range.last; ++number)
        runNumbered(range, number, examples);
    record().print(std::cout);
}

void writeDocuments(std::uint64_t seed, std::uint64_t count) {
    for (std::uint64_t number = 1; number <= count; ++number) {
        Random random = randomOf(seed, number);
        const Document document =
            random.pick({randomPhoto, randomPhoto, randomText, randomPage})(random);
        const std::size_t dot = document.name.rfind('.');
        const std::string extension = dot == std::string::npos ? "" : document.name.substr(dot);
        if (extension.ends_with('/')) continue;
        writeFile(std::to_string(number) + extension, document.file);
    }
}

int run(std::span<const std::string> arguments) {
    const std::string command = arguments.empty() ? "" : arguments[0];
    if (command == "documents" && arguments.size() == 3) {
        writeDocuments(asNumber(arguments[1]), asNumber(arguments[2]));
    } else if ((command == "jobs" || command == "record") && arguments.size() == 5) {
        const Range range{asNumber(arguments[1]), asNumber(arguments[2]), asNumber(arguments[3])};
        recordNotices();
        command == "jobs" ? runJobs(range, arguments[4]) : showLast(range, arguments[4]);
    } else {
        std::cerr << "usage: compare-driver jobs|record SEED FIRST LAST EXAMPLES\n"
                     "       compare-driver documents SEED COUNT\n";
        return 2;
    }
    return 0;
}

}  // namespace
}  // namespace compare

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        return compare::run(arguments);
    } catch (const std::exception& failure) {
        std::cerr << "compare-driver: " << failure.what() << '\n';
        return 1;
    }
}
