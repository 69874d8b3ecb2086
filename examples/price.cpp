// The label of price.tavio, from a program: price tcp://192.168.1.50
#include "print_to.h"
using namespace tavio::printing;

int main(int /*count*/, char** arguments) {
    Ticket ticket({.stock = Stock::ofInches(2.5, 1.5)});
    const auto words = [&](Place place, const char* text, WordsOptions options) {
        options.font = Source::file("examples/fonts/DejaVuSans.ttf");
        ticket.words(text, place, std::move(options));
    };
    ticket.box({0, 0}, {750, 450}, {.thickness = 4});
    words({22, 28}, "Sea salt caramels", {.isBold = true, .size = 15});
    words({106, 30}, "Box of 12 · 180 g · contains milk", {.size = 7});
    ticket.line({162, 30}, 690);
    words({190, 30}, "4.90 €",
          {.isBold = true,
           .size = 19,
           .box = Size{318, 130},
           .align = Align::kCentre,
           .isWhiteOnBlack = true});
    words({334, 30}, "27.22 € / kg", {.size = 7});
    words({384, 30}, "Best before 11 / 2026", {.size = 6});
    ticket.code(CodeKind::kEan13, "400638133393", {190, 382},
                {.size = ModuleDots{3}, .hasText = true, .barHeight = 186});
    return printTo(arguments[1], ticket.finish(Finish::kCut));
}
