// Draws the sample documents that the demo prints, into a folder:
//
//   draw_examples examples
#include <exception>
#include <iostream>
#include <string>

#include "examples/drawing/samples.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: draw_examples FOLDER\n";
        return 2;
    }
    const std::string folder = argv[1];
    try {
        tavio::examples::drawTicket(folder + "/ticket.pdf");
        tavio::examples::drawStub(folder + "/stub.pdf");
        tavio::examples::drawPhoto(folder + "/photo.jpg");
        tavio::examples::drawSeal(folder + "/seal.png");
    } catch (const std::exception& error) {
        std::cerr << "draw_examples: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
