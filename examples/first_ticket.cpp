// Prints a photo, checked before: first_ticket PHOTO ADDRESS
#include <iostream>
#include <tavio/printing.h>

using namespace tavio::printing;

bool printPhoto(const std::string& photo, const std::string& printerAddress) {
    const auto job = encode(
        Ticket().picture(Source::file(photo), {.row = 12, .column = 12}).finish(Finish::kCut));
    if (!job) {
        std::cerr << job.error().front().sentence << '\n';
        return false;
    }
    const PrintResult result = Printer(printerAddress).print(*job);
    for (const Remark& remark : result.remarks) std::cerr << remark.sentence << '\n';
    std::cout << result.describe() << '\n';
    return result.isGood();
}

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    return printPhoto(argv[1], argv[2]) ? 0 : 1;
}
