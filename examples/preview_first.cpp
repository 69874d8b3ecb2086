// Shows a ticket before it is printed: preview_first DOCUMENT TICKET.png ADDRESS. Prints it if the
// person types "y".
#include <fstream>
#include <iostream>
#include <string>
#include <tavio/printing.h>

using namespace tavio::printing;

namespace {

bool save(const tavio::Bytes& png, const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
    return static_cast<bool>(file.flush());
}

bool personAgrees(const std::string& picture) {
    std::cout << "look at " << picture << "; print it? [y/n] " << std::flush;
    std::string answer;
    return std::getline(std::cin, answer) && answer == "y";
}

int fail(const std::string& sentence) {
    std::cerr << sentence << '\n';
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    Ticket ticket;
    ticket.document(Source::file(argv[1]), {}, {.fit = Fit::kContain}).finish(Finish::kCut);

    const auto job = encode(ticket);
    if (!job) return fail(job.error().front().sentence);
    for (const Warning& warning : job->warnings()) std::cerr << warning.sentence << '\n';

    // Drawn from the very bytes that the printer will get.
    const auto seen = preview(*job);
    if (!seen) return fail(seen.error().sentence);
    if (!save(seen->tickets.front().png, argv[2])) return fail("the picture cannot be written");
    if (!personAgrees(argv[2])) return 0;

    const PrintResult result = Printer(argv[3]).print(*job);
    std::cout << result.describe() << '\n';
    return result.isGood() ? 0 : 1;
}
