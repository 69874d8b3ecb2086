// The ticket of concert.tavio, from a program: concert tcp://192.168.1.50
#include "print_to.h"
using namespace tavio::printing;

int main(int /*count*/, char** arguments) {
    Ticket ticket({.stock = Stock::concert()});
    const auto words = [&](Place at, const char* text, double size, bool isBold = false,
                           std::optional<Size> box = {}, bool isWhite = false) {
        const auto align = box ? Align::kCentre : Align::kTopLeft;
        const Source font = Source::file("examples/fonts/DejaVuSans.ttf");
        ticket.words(text, at, {"sans", font, isBold, false, size, 0, box, align, {}, isWhite});
    };
    words({44, 48}, "HARBOUR HALL", 11, true, Size{1130, 84}, true);
    words({146, 44}, "Evening at the Harbour", 22, true);
    words({254, 48}, "Lena Brandt Quartet · Songs of three seas", 10);
    const std::vector facts{"DATE", "Sat 14 March", "DOORS", "19:30", "SEAT", "Row F, 12"};
    auto fact = facts.begin();
    for (const std::int32_t column : {48, 478, 908}) {
        words({356, column}, *fact++, 6);
        words({386, column - 2}, *fact++, 13, true);
    }
    ticket.line({332, 48}, 1130).line({472, 48}, 1130);
    words({506, 48}, "26 € · No readmission. Keep this ticket until the end.", 6.5);
    ticket.line({20, 1222}, 560, {LineDirection::kDown, 3, 12});
    ticket.code(CodeKind::kQr, "https://example.org/t/4711-0815", {4, 1246}, {ModuleDots{10}});
    words({362, 1246}, "F 12", 20, true, Size{370, 110});
    words({500, 1246}, "No. 4711-0815", 7, false, Size{370, 44});
    return printTo(arguments[1], ticket.finish(Finish::kCut));
}
