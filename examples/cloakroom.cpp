// The tag of cloakroom.tavio, from a program: cloakroom tcp://192.168.1.50
#include "print_to.h"
using namespace tavio::printing;

int main(int /*count*/, char** arguments) {
    Ticket ticket({.stock = Stock::cinema()});
    const auto words = [&](Place place, Size box, const char* text, WordsOptions options) {
        options.font = Source::file("examples/fonts/DejaVuSans.ttf");
        options.box = box;
        options.align = Align::kCentre;
        ticket.words(text, place, std::move(options));
    };
    words({40, 40}, {520, 96}, "CLOAKROOM", {.isBold = true, .size = 13, .isWhiteOnBlack = true});
    words({140, 40}, {520, 276}, "217", {.isBold = true, .size = 56});
    ticket.code(
        CodeKind::kCode128, "CR-0217", {424, 0},
        {.size = ModuleDots{4}, .box = Size{600, 84}, .align = Align::kCentre, .barHeight = 84});
    words({522, 40}, {520, 50}, "Rail B, hook 17", {.size = 8});
    ticket.line({590, 0}, 600, {.dash = 12}).box({634, 40}, {520, 200}, {.thickness = 4});
    words({638, 44}, {256, 192}, "217", {.isBold = true, .size = 26});
    ticket.line({634, 300}, 200, {.direction = LineDirection::kDown});
    words({638, 326}, {210, 192}, "2 coats", {.size = 9});
    words({858, 40}, {520, 50}, "Keep this half. Open until 01:00.", {.size = 7});
    words({904, 40}, {520, 40}, "No liability for valuables in pockets.", {.size = 6});
    return printTo(arguments[1], ticket.finish(Finish::kCut));
}
