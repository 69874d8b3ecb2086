// tavio-scan: finds the codes in the picture on its standard input. tools/common/scan_answer.h
// describes its answer.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "TavioIpadSDK/helper/program/answer.h"
#include "TavioIpadSDK/helper/program/run.h"
#include "tools/common/scan_answer.h"
#include "tools/tavio-scan/bitmap.h"
#include "tools/tavio-scan/find_codes.h"

namespace tavio::scan {

namespace {

using helper_program::answerWith;
using helper_program::Task;

std::vector<Byte> contentOf(int file) {
    struct stat status {};
    if (::fstat(file, &status) != 0 || status.st_size < 0) return {};
    std::vector<Byte> content(static_cast<std::size_t>(status.st_size));
    std::size_t read = 0;
    while (read < content.size()) {
        const ssize_t count =
            ::pread(file, content.data() + read, content.size() - read, static_cast<off_t>(read));
        if (count <= 0) return {};
        read += static_cast<std::size_t>(count);
    }
    return content;
}

bool answerWithCodes(int file) {
    const auto bitmap = readBitmap(contentOf(file));
    if (!bitmap) return false;
    const std::string text = foundCodes(*bitmap);
    const std::uint64_t count = text.size();
    return answerWith(std::as_bytes(std::span(&count, 1))) &&
           answerWith(std::as_bytes(std::span(text)));
}

Task taskOf(const std::vector<std::string_view>& words) {
    if (!words.empty()) return nullptr;
    return [](int file) {
        try {
            return answerWithCodes(file);
        } catch (const std::exception&) {  // of the library; for memory there is an answer
            return false;
        }
    };
}

}  // namespace

}  // namespace tavio::scan

int main(int count, char** arguments) {
    using namespace tavio::scan;
    const tavio::helper_program::Program program{"< picture", taskOf,
                                                 std::as_bytes(std::span(&kOutOfMemory, 1))};
    return tavio::helper_program::run(program, {arguments, static_cast<std::size_t>(count)});
}
