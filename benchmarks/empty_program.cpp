// What the start of a program costs before it does anything.
#include <iostream>

int main() {
    std::cout << "nothing\n";
    return 0;
}
