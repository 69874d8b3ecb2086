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
#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/url.h"

namespace tavio::platform {

// The stored picture file of one asset.
class TAVIO_API AssetRepresentation {
  public:
    virtual ~AssetRepresentation() = default;

    // The file's length in bytes.
    virtual std::uint64_t size() const = 0;

    // Copies up to into.size() bytes from `offset` on into `into` and returns their number. On
    // failure *error (never null) gets the reason.
    virtual std::size_t getBytes(std::span<Byte> into, std::uint64_t offset,
                                 std::string* error) const = 0;

    // The whole file, if it is in memory already and does not change; then neither of the above is
    // called. Else a null pointer.
    virtual std::shared_ptr<const Bytes> fileInMemory() const { return nullptr; }
};

// Receives the asset's stored file, or a null pointer when no asset has the URL.
using AssetResultHandler = std::function<void(std::shared_ptr<const AssetRepresentation>)>;
// Receives why the lookup failed.
using AssetFailureHandler = std::function<void(const std::string& error)>;

// An application registers one so that photos can be printed.
class TAVIO_API PhotoLibrary {
  public:
    virtual ~PhotoLibrary() = default;

    // Looks the asset up and then calls exactly one of the handlers, once. It may do so before it
    // returns: it is called on a background thread, never on the one that waits for the photo. If
    // it calls neither, the caller of the print waits forever.
    virtual void assetForURL(const Url& url, AssetResultHandler onResult,
                             AssetFailureHandler onFailure) = 0;
};

// Registers the photo library for all lookups; a null pointer unregisters it. Without one every
// lookup ends in the failure handler. Do not call it while a job is running.
TAVIO_API void setPhotoLibrary(std::shared_ptr<PhotoLibrary> library);

// The registered photo library, or a null pointer.
TAVIO_API std::shared_ptr<PhotoLibrary> photoLibrary();

// Pictures kept in memory under the absolute text of their URL.
//
//   auto photos = std::make_shared<platform::InMemoryPhotoLibrary>();
//   URL url = photos->add("portrait.jpg", fileBytes);
//   platform::setPhotoLibrary(photos);
//   SendFile(url, 0, 0);
class TAVIO_API InMemoryPhotoLibrary : public PhotoLibrary {
  public:
    // Adds a picture file and returns its asset URL. The URL ends in the extension of `name` (the
    // part after its last "."), unchanged.
    Url add(const std::string& name, Bytes file);

    // The same for a file that the caller shares (never null): it is not copied.
    Url share(const std::string& name, std::shared_ptr<const Bytes> file);

    void assetForURL(const Url& url, AssetResultHandler onResult,
                     AssetFailureHandler onFailure) override;

  private:
    std::mutex mutex_;  // guards assets_
    std::map<std::string, std::shared_ptr<const Bytes>> assets_;
};

// The pictures of one folder. A URL "assets-library://folder/NAME" names the file NAME in it; NAME
// may not contain a path separator. A file is opened at the lookup and read when its bytes are
// asked for; if that fails, no bytes are delivered. The lookup fails if the file is not regular or
// cannot be read.
class TAVIO_API FolderPhotoLibrary : public PhotoLibrary {
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
