// A helper program for tests. Its words are a command and a number; it answers 64 bytes, a text that is
// filled up with spaces:
//
//   echo         its input
//   parent       the number of its parent process, and its own
//   half         the first half of that, and no more
//   late N       like echo, after N milliseconds
//   hang         nothing, ever
//   spin, eat, crash, exit N   takes processor time, takes memory, dies by a signal, ends
//
// An input that begins with one of the last four words is opened that way.
#include <array>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "TavioIpadSDK/helper/program/answer.h"
#include "TavioIpadSDK/helper/program/parse_number.h"
#include "TavioIpadSDK/helper/program/run.h"

namespace {

using namespace tavio::helper_program;

constexpr std::size_t kAnswerBytes = 64;

bool answerText(std::string text, std::size_t bytes = kAnswerBytes) {
    text.resize(kAnswerBytes, ' ');
    return answerWith(std::as_bytes(std::span(text)).first(bytes));
}

std::string contentOf(int input) {
    std::array<char, kAnswerBytes> bytes{};
    const ssize_t count = ::pread(input, bytes.data(), bytes.size(), 0);
    return {bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

std::string processes() {
    return std::to_string(::getppid()) + " " + std::to_string(::getpid());
}

void spin() {
    volatile unsigned turns = 0;
    while (true) turns = turns + 1;
}

void eat() {
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    while (true) static_cast<volatile char*>(std::malloc(kPiece))[0] = 1;
}

// Returns if the command is none of these.
void misbehave(std::string_view command, int number) {
    if (command == "spin") spin();
    if (command == "eat") eat();
    if (command == "crash") ::raise(SIGSEGV);
    if (command == "exit") ::_exit(number);
}

bool perform(std::string_view command, int number, const std::string& input) {
    misbehave(command, number);
    if (command == "late") ::usleep(static_cast<unsigned>(number) * 1000);
    if (command == "parent") return answerText(processes());
    if (command == "half") {
        answerText(processes(), kAnswerBytes / 2);
        ::pause();
    }
    if (command == "hang") ::pause();
    return answerText(input);
}

Task taskWith(const std::vector<std::string_view>& words, const std::string* input) {
    int number = 0;
    if (words.empty() || (words.size() > 1 && !parse(words[1], number))) return nullptr;
    const std::string command(words[0]);
    const std::string known = input != nullptr ? *input : "";
    const bool isKnown = input != nullptr;
    return [=](int file) { return perform(command, number, isKnown ? known : contentOf(file)); };
}

Task taskOf(const std::vector<std::string_view>& words) {
    return taskWith(words, nullptr);
}

TaskMaker openInput(int file) {
    const std::string input = contentOf(file);
    misbehave(input, 0);
    return [input](const std::vector<std::string_view>& words) { return taskWith(words, &input); };
}

constexpr auto kOutOfMemory = [] {
    std::array<char, kAnswerBytes> text{};
    text.fill('M');
    return text;
}();

}  // namespace

int main(int count, char** arguments) {
    const Program program{"COMMAND [NUMBER] < input", taskOf,
                          std::as_bytes(std::span(kOutOfMemory)), [] {}, openInput};
    return run(program, {arguments, static_cast<std::size_t>(count)});
}
