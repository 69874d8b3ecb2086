#include "work_folder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace compare {

void writeFile(const std::string& name, const Bytes& bytes) {
    std::ofstream file(name, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error(name + " cannot be written");
}

std::string withoutFolder(std::string text) {
    const std::string folder = std::filesystem::current_path().string();
    const std::size_t at = text.find(folder);
    if (at == std::string::npos) return text;
    return text.substr(0, at).append("~").append(text.substr(at + folder.size()));
}

}  // namespace compare
