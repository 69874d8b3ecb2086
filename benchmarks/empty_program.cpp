// Does nothing: measures the start of a program.
#include <iostream>

int main() {
    std::cout << "nothing\n";
    return 0;
}
