#include "tools/tavio-printer/tickets/ticket_folder.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/write_all.h"

namespace tavio::virtual_printer {
namespace {

constexpr std::string_view kPrefix = "ticket-";
constexpr std::size_t kDigits = 6;
constexpr std::size_t kMaxDigits = 18;  // always fits 64 bits
constexpr const char* kPicture = ".png";
constexpr const char* kJob = ".bin";

// The suffix of a file being written. If the program ends meanwhile, the next one with this folder
// removes it.
constexpr const char* kUnfinished = ".unfinished";

std::string errorText(int number) {
    return std::generic_category().message(number);
}

std::string fileName(std::uint64_t id, const char* extension) {
    std::string digits = std::to_string(id);
    if (digits.size() < kDigits) digits.insert(0, kDigits - digits.size(), '0');
    return std::string(kPrefix).append(digits).append(extension);
}

// The number in a name made by fileName().
std::optional<std::uint64_t> numberIn(const std::string& name, const char* extension) {
    const std::string_view ending = extension;
    if (!name.starts_with(kPrefix) || !name.ends_with(ending)) return std::nullopt;
    if (name.size() < kPrefix.size() + kDigits + ending.size()) return std::nullopt;
    const char* begin = name.data() + kPrefix.size();
    const char* end = name.data() + name.size() - ending.size();
    if (static_cast<std::size_t>(end - begin) > kMaxDigits) return std::nullopt;
    std::uint64_t number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || stop != end || number == 0) return std::nullopt;
    if (fileName(number, extension) != name) return std::nullopt;
    return number;
}

bool isUnfinished(const std::string& name) {
    for (const char* extension : {kPicture, kJob}) {
        if (numberIn(name, std::string(extension).append(kUnfinished).c_str())) return true;
    }
    return false;
}

// 0, or the error's number.
int writeNew(const std::string& path, std::span<const Byte> content) {
    constexpr mode_t kPermissions = 0666;  // less what the user's mask takes
    machine::Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, kPermissions));
    if (!file.isOpen()) return errno;
    const int error = machine::writeAll(file.get(), std::as_bytes(content));
    return error != 0 ? error : file.close();
}

}  // namespace

TicketFolder::TicketFolder(std::string path, FolderLimits limits)
    : path_(std::move(path)), limits_(limits) {
    std::error_code error;
    std::filesystem::create_directories(path_, error);
    folder_.reset(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder_.isOpen()) {
        const int number = error ? error.value() : errno;
        throw std::runtime_error("cannot make the folder " + path_ + ": " + errorText(number));
    }
    lock();
    readNames();
    const std::string trial = pathOf(newest() + 1, kPicture).append(kUnfinished);
    const int number = writeNew(trial, {});
    ::unlink(trial.c_str());
    if (number != 0) {
        throw std::runtime_error("cannot write to the folder " + path_ + ": " + errorText(number));
    }
}

// Two printers in one folder would write tickets with the same numbers.
void TicketFolder::lock() {
    // Some file systems have no locks; there is no check then.
    if (::flock(folder_.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return;
    throw std::runtime_error("another printer writes to the folder " + path_);
}

void TicketFolder::readNames() {
    std::error_code error;
    std::filesystem::directory_iterator entry(path_, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        const std::string name = entry->path().filename().string();
        if (isUnfinished(name)) ::unlink(entry->path().c_str());
        for (const char* extension : {kPicture, kJob}) {
            const auto number = numberIn(name, extension);
            if (!number) continue;
            const auto size = entry->file_size(ignored);
            if (ignored) continue;  // not a file
            sizes_[*number] += static_cast<std::size_t>(size);
            total_ += static_cast<std::size_t>(size);
        }
    }
    if (error) {
        throw std::runtime_error("cannot read the folder " + path_ + ": " + error.message());
    }
}

std::uint64_t TicketFolder::newest() const {
    return sizes_.empty() ? 0 : sizes_.rbegin()->first;
}

std::string TicketFolder::pathOf(std::uint64_t id, const char* extension) const {
    return (std::filesystem::path(path_) / fileName(id, extension)).string();
}

std::string TicketFolder::write(std::uint64_t id, std::span<const Byte> png,
                                std::span<const Byte> bytes) {
    std::string failure = writeFile(id, kPicture, png);
    if (failure.empty()) failure = writeFile(id, kJob, bytes);
    const std::string removal = removeOldest();
    return failure.empty() ? removal : failure;
}

std::string TicketFolder::writeFile(std::uint64_t id, const char* extension,
                                    std::span<const Byte> content) {
    if (content.empty()) return "";
    const std::string path = pathOf(id, extension);
    const std::string unfinished = std::string(path).append(kUnfinished);
    int error = writeNew(unfinished, content);
    if (error == 0 && std::rename(unfinished.c_str(), path.c_str()) != 0) error = errno;
    if (error != 0) {
        ::unlink(unfinished.c_str());
        return "cannot write " + path + ": " + errorText(error);
    }
    sizes_[id] += content.size();
    total_ += content.size();
    return "";
}

std::string TicketFolder::removeOldest() {
    while (sizes_.size() > limits_.tickets || (total_ > limits_.bytes && sizes_.size() > 1)) {
        const auto [id, size] = *sizes_.begin();
        for (const char* extension : {kPicture, kJob}) {
            const std::string path = pathOf(id, extension);
            if (::unlink(path.c_str()) == 0 || errno == ENOENT) continue;
            return "cannot remove " + path + ": " + errorText(errno);
        }
        total_ -= size;
        sizes_.erase(sizes_.begin());
    }
    return "";
}

}  // namespace tavio::virtual_printer
