#include "TavioIpadSDK/platform/photo_library.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "TavioIpadSDK/machine/regular_file.h"
#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::platform {
namespace {

// Written by setPhotoLibrary, read by photoLibrary. Never destroyed: a global object of the
// application may still print in its destructor.
std::shared_ptr<PhotoLibrary>& registeredLibrary() {
    static std::shared_ptr<PhotoLibrary>& library = *new std::shared_ptr<PhotoLibrary>;
    return library;
}

constexpr const char* kPastTheEnd = "the offset lies behind the end of the file";
constexpr const char* kUnreadable = "the photo cannot be read";

// A picture file that is held in memory.
class BytesRepresentation : public AssetRepresentation {
  public:
    explicit BytesRepresentation(std::shared_ptr<const Bytes> bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t size() const override { return bytes_->size(); }

    std::size_t getBytes(std::span<Byte> into, std::uint64_t offset,
                         std::string* error) const override {
        if (offset > bytes_->size()) {
            *error = kPastTheEnd;
            return 0;
        }
        const auto start = static_cast<std::size_t>(offset);
        const std::size_t count = std::min(into.size(), bytes_->size() - start);
        std::copy_n(bytes_->begin() + static_cast<std::ptrdiff_t>(start), count, into.begin());
        return count;
    }

    std::shared_ptr<const Bytes> fileInMemory() const override { return bytes_; }

  private:
    std::shared_ptr<const Bytes> bytes_;
};

// A picture file on disk, held open: it stays the same file even if its name is removed or
// replaced.
class FileRepresentation : public AssetRepresentation {
  public:
    explicit FileRepresentation(std::unique_ptr<machine::RegularFile> file)
        : file_(std::move(file)) {}

    std::uint64_t size() const override { return file_->size(); }

    std::size_t getBytes(std::span<Byte> into, std::uint64_t offset,
                         std::string* error) const override {
        if (offset > size()) {
            *error = kPastTheEnd;
            return 0;
        }
        const auto count = file_->read(into, offset);
        if (!count) *error = kUnreadable;
        return count.value_or(0);
    }

  private:
    std::unique_ptr<machine::RegularFile> file_;
};

// The largest picture allowed takes 1 GiB uncompressed. If there is no memory for a photo, its
// caller waits forever.
constexpr std::uint64_t kMaxFileBytes = std::uint64_t{1} << 31;

constexpr std::string_view kFolderPrefix = "assets-library://folder/";

// The file name in a URL of FolderPhotoLibrary, or "" when it names no file of the folder.
std::string fileNameOf(const Url& url) {
    if (url.absoluteText().compare(0, kFolderPrefix.size(), kFolderPrefix) != 0) return "";
    std::string name = url.fileSystemPath().substr(1);
    if (name == "." || name == ".." || name.find('/') != std::string::npos) return "";
    return name;
}

}  // namespace

void setPhotoLibrary(std::shared_ptr<PhotoLibrary> library) {
    registeredLibrary() = std::move(library);
}

std::shared_ptr<PhotoLibrary> photoLibrary() {
    return registeredLibrary();
}

Url InMemoryPhotoLibrary::add(const std::string& name, Bytes file) {
    return share(name, std::make_shared<const Bytes>(std::move(file)));
}

Url InMemoryPhotoLibrary::share(const std::string& name, std::shared_ptr<const Bytes> file) {
    const std::lock_guard lock(mutex_);
    const std::size_t dot = name.rfind('.');
    const std::string extension = dot == std::string::npos ? "" : name.substr(dot);
    Url url =
        Url::fromText("assets-library://asset/" + std::to_string(assets_.size() + 1) + extension);
    assets_[url.absoluteText()] = std::move(file);
    return url;
}

void InMemoryPhotoLibrary::assetForURL(const Url& url, AssetResultHandler onResult,
                                       AssetFailureHandler /*onFailure*/) {
    std::shared_ptr<const AssetRepresentation> found;
    {
        const std::lock_guard lock(mutex_);
        const auto asset = assets_.find(url.absoluteText());
        if (asset != assets_.end()) found = std::make_shared<BytesRepresentation>(asset->second);
    }
    onResult(found);
}

Url FolderPhotoLibrary::urlOf(const std::string& name) {
    // The path form does the percent-encoding; it leaves only "/" as it is.
    const std::string encoded =
        Url::fromPath("/" + name).absoluteText().substr(sizeof "file:///" - 1);
    return Url::fromText(std::string(kFolderPrefix) + encoded);
}

void FolderPhotoLibrary::assetForURL(const Url& url, AssetResultHandler onResult,
                                     AssetFailureHandler onFailure) {
    const std::string name = fileNameOf(url);
    const std::string path = folder_ + "/" + name;
    if (name.empty() || !fileExists(path)) {
        onResult(nullptr);
        return;
    }
    auto file = machine::RegularFile::open(path);
    Byte first = 0;
    if (!file || !file->read({&first, 1}, 0)) {
        onFailure(kUnreadable);
        return;
    }
    if (file->size() > kMaxFileBytes) {
        onFailure("the photo is too large");
        return;
    }
    onResult(std::make_shared<FileRepresentation>(std::move(file)));
}

}  // namespace tavio::platform
