// Runs a fuzzer on random inputs from a printed seed: fuzz_NAME [seed], or on files: fuzz_NAME
// FILE...

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::vector<std::uint8_t>;

// Random bytes mixed with pieces of the formats, so that inputs get past the first check.
Input randomInput(std::mt19937_64& random) {
    static const std::string kPieces[] = {
        "<RC",          "<RC1,2>", "<G",      "<G9>", ">",   "<7>\x1B", "\x1B",
        "<PM>",         "<p>",     "<SP1,2>", "BM",   "II*", "MM",      "\x89PNG\r\n\x1A\n",
        "\xFF\xD8\xFF", "IHDR",    "eXIf",    "Exif"};
    Input input;
    const std::size_t size = random() % 600;
    while (input.size() < size) {
        const std::uint64_t kind = random() % 8;
        if (kind == 0) {
            const std::string& piece = kPieces[random() % std::size(kPieces)];
            input.insert(input.end(), piece.begin(), piece.end());
        } else if (kind == 1) {
            input.insert(input.end(), random() % 40, 0);
        } else {
            input.push_back(static_cast<std::uint8_t>(random()));
        }
    }
    return input;
}

int runFile(const char* path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "cannot read %s\n", path);
        return 1;
    }
    const Input input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    return LLVMFuzzerTestOneInput(input.data(), input.size());
}

bool isNumber(const std::string& text) {
    return text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && !isNumber(argv[1])) {
        for (int i = 1; i < argc; ++i)
            if (runFile(argv[i]) != 0) return 1;
        return 0;
    }
    constexpr int kInputs = 3000;
    const unsigned long seed = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1;
    std::printf("%d random inputs, seed %lu\n", kInputs, seed);
    std::mt19937_64 random(seed);
    for (int i = 0; i < kInputs; ++i) {
        const Input input = randomInput(random);
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    return 0;
}
