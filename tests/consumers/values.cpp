// Composes, encodes and previews the ticket of own_transport.cpp, and prints it to where no printer
// is. Writes the job: values FOLDER PHOTO JOB.bin
#include <fstream>
#include <tavio/printing.h>

using namespace tavio::printing;

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const Source photo = Source::file(std::string(argv[1]) + "/" + argv[2]);
    Ticket ticket;
    for (const auto way : {BlackAndWhite::kDithered, BlackAndWhite::kThreshold})
        ticket.picture(photo, {10, 20}, {.blackAndWhite = way, .classic = Classic{.scaled = true}});
    ticket.finish(Finish::kCut);
    const auto job = encode(ticket);
    if (!job || !preview(*job)) return 1;
    if (!encode(Ticket().picture(photo, {10, 20}, {.fit = Fit::kContain}))) return 1;
    std::ofstream(argv[3], std::ios::binary)
        .write(reinterpret_cast<const char*>(job->bytes().data()),
               static_cast<std::streamsize>(job->bytes().size()));
    const PrintResult result = Printer("tcp://127.0.0.1:1").print(*job);
    return result.outcome == tavio::links::Outcome::kNothingSent ? 0 : 1;
}
