// encode_once make KIND WIDTH HEIGHT FILE: makes a one-bit picture (bench_inputs.h lists the
// kinds), a bitmap file. encode_once FILE: encodes it, so that the whole process can be measured,
// and prints the number of bytes that would be sent.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <ios>
#include <string>

#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "benchmarks/bench_inputs.h"

namespace {

using namespace tavio::benchmarks;

bool make(const std::string& name, std::int32_t width, std::int32_t height, const char* path) {
    const auto kind = oneBitNamed(name);
    if (!kind || width < 160 || width > 16384 || width % 4 != 0 || height < 160 || height > 16384)
        return false;
    const tavio::Bytes bytes = oneBitFile(*kind, width, height);
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(file.flush());
}

tavio::Bytes readFile(const char* path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    tavio::Bytes bytes(static_cast<std::size_t>(std::max<std::streamoff>(file.tellg(), 0)));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

std::int32_t number(const char* text) {
    return static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 6 && std::string(argv[1]) == "make")
        return make(argv[2], number(argv[3]), number(argv[4]), argv[5]) ? 0 : 1;
    if (argc != 2) {
        std::fputs("usage: encode_once make KIND WIDTH HEIGHT FILE | encode_once FILE\n", stderr);
        return 2;
    }
    const tavio::Bytes file = readFile(argv[1]);
    const auto link = sendToNobody();
    tavio::encoder::ParseBMP(file);
    std::printf("%llu\n", static_cast<unsigned long long>(bytesSent(*link)));
    return bytesSent(*link) > 0 ? 0 : 1;
}
