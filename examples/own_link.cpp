// Prints over a link of the application's own: own_link TEXT. This one shows the bytes as text, as a
// device on a bus of yours would be given them.
#include <cctype>
#include <iostream>
#include <memory>
#include <tavio/links/local_link.h>
#include <tavio/printing.h>

using namespace tavio;
using namespace tavio::printing;

namespace {

// LocalLink counts, cancels and reports; what is left is to take the bytes.
class BusLink : public links::LocalLink {
  protected:
    bool begin(const std::string& /*address*/) override {
        std::cout << "bus: connected\n";
        return true;
    }

    bool take(std::span<const Byte> bytes) override {
        if (bytes.size() > kMaxMessage) return fail("the bus takes no message of this size");
        std::cout << "bus: " << bytes.size() << " bytes: ";
        for (const Byte byte : bytes)
            std::cout << (std::isprint(byte) ? static_cast<char>(byte) : '.');
        std::cout << '\n';
        return true;
    }

    void end() override { std::cout << "bus: released\n"; }

    // What the device says after a job; no text if it says nothing.
    Text answer() override { return "READY"; }

  private:
    static constexpr std::size_t kMaxMessage = 100'000;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    Ticket ticket;
    ticket.text(argv[1], {.row = 100, .column = 50}).finish(Finish::kCut);
    const auto job = encode(ticket);
    if (!job) {
        std::cerr << job.error().front().sentence << '\n';
        return 1;
    }
    Printer printer([] { return std::make_shared<BusLink>(); });  // one link for each job
    const PrintResult result = printer.print(*job, {.readyAfter = true});
    std::cout << result.describe() << '\n';
    return result.isGood() ? 0 : 1;
}
