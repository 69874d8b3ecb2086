// The device's photo library: pictures found by asset URL, asynchronously.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/platform/url.h"

namespace tavio::platform {

// The stored picture file of one asset.
class AssetRepresentation {
  public:
    virtual ~AssetRepresentation() = default;

    // The file's length in bytes.
    virtual std::uint64_t size() const = 0;

    // Copies up to into.size() bytes from `offset` into `into` and returns how many it delivered;
    // on failure says why in *error (never null).
    virtual std::size_t getBytes(std::span<Byte> into, std::uint64_t offset,
                                 std::string* error) const = 0;

    // The whole file, where it is in memory already and will not change; then it is used as it is,
    // and neither of the above is called. A null pointer where it is not.
    virtual std::shared_ptr<const Bytes> fileInMemory() const { return nullptr; }
};

// Receives the asset's stored file, or a null pointer when no asset has the URL.
using AssetResultHandler = std::function<void(std::shared_ptr<const AssetRepresentation>)>;
// Receives why the lookup failed.
using AssetFailureHandler = std::function<void(const std::string& error)>;

// What an application registers so that photos can be printed.
class PhotoLibrary {
  public:
    virtual ~PhotoLibrary() = default;

    // Looks the asset up and then calls exactly one of the handlers, once. It may do so before it
    // returns: the library asks on a background thread, never on the one that waits for the photo.
    // A library that calls neither leaves its caller waiting for good.
    virtual void assetForURL(const Url& url, AssetResultHandler onResult,
                             AssetFailureHandler onFailure) = 0;
};

// Registers the photo library that all lookups go to from now on; a null pointer unregisters it.
// Initially there is none, and every lookup ends in the failure handler. Not to be changed while a
// job is running.
void setPhotoLibrary(std::shared_ptr<PhotoLibrary> library);

// The registered photo library, or a null pointer.
std::shared_ptr<PhotoLibrary> photoLibrary();

// Pictures kept in memory under the absolute text of their URL.
//
//   auto photos = std::make_shared<platform::InMemoryPhotoLibrary>();
//   URL url = photos->add("portrait.jpg", fileBytes);
//   platform::setPhotoLibrary(photos);
//   SendFile(url, 0, 0);
class InMemoryPhotoLibrary : public PhotoLibrary {
  public:
    // Takes a picture file and returns the asset URL that it is found by from now on. The URL ends
    // in the extension of `name` (what follows its last "."), to the letter.
    Url add(const std::string& name, Bytes file);

    // The same for a file that the caller keeps too (never null): it is not copied.
    Url share(const std::string& name, std::shared_ptr<const Bytes> file);

    void assetForURL(const Url& url, AssetResultHandler onResult,
                     AssetFailureHandler onFailure) override;

  private:
    std::mutex mutex_;  // guards assets_
    std::map<std::string, std::shared_ptr<const Bytes>> assets_;
};

// The pictures of one folder. A URL "assets-library://folder/NAME" names the file NAME in it; NAME
// may not contain a path separator. A file is opened when it is looked up, and read when its bytes
// are asked for; a failure to read it later than that delivers no bytes. The lookup fails where the
// file cannot be read, or is not a regular one.
class FolderPhotoLibrary : public PhotoLibrary {
  public:
    explicit FolderPhotoLibrary(std::string folder) : folder_(std::move(folder)) {}

    // The asset URL of the file `name` in the folder, whether or not it exists.
    static Url urlOf(const std::string& name);

    void assetForURL(const Url& url, AssetResultHandler onResult,
                     AssetFailureHandler onFailure) override;

  private:
    std::string folder_;
};

}  // namespace tavio::platform
