#include "TavioIpadSDK/intake/image_to_bmp.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <memory>
#include <semaphore>
#include <span>
#include <string>
#include <utility>

#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/intake/target_size.h"
#include "TavioIpadSDK/machine/large_pages.h"
#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/pictures/rows_ahead.h"
#include "TavioIpadSDK/platform/background_queue.h"
#include "TavioIpadSDK/platform/photo_library.h"
#include "TavioIpadSDK/settings/job.h"

namespace tavio::intake {
namespace {

using pictures::PictureRows;
using platform::AssetRepresentation;
using platform::PhotoLibrary;

// Rows that are decoded at once, on another core.
constexpr std::int32_t kRowsDecodedAhead = 64;

// Shared by the waiting caller, the lookup and its two handlers.
struct Lookup {
    std::binary_semaphore done{0};
    std::atomic_flag delivered;  // set by the first handler that runs: a library that calls a
                                 // second one must not print while the caller has gone on
};

// A raw block, so that a refusal is a null pointer and not an exception.
struct Free {
    void operator()(Byte* block) const { std::free(block); }  // NOLINT(*-no-malloc)
};
using Block = std::unique_ptr<Byte, Free>;

Block allocate(std::uint64_t size) {
    const std::uint64_t atLeastOne = std::max<std::uint64_t>(size, 1);  // 0 bytes are a valid block
    return Block(static_cast<Byte*>(std::malloc(atLeastOne)));          // NOLINT(*-no-malloc)
}

// A copy of the representation's bytes in the block; fewer than asked for if it failed.
std::shared_ptr<const Bytes> readFile(const AssetRepresentation* representation, Byte* block,
                                      std::uint64_t blockSize) {
    std::size_t bytesRead = 0;
    if (representation != nullptr) {
        const std::uint64_t length = std::min(representation->size(), blockSize);
        std::string error;  // ignored: the delivered bytes are decoded
        bytesRead = representation->getBytes({block, length}, 0, &error);
        bytesRead = std::min<std::size_t>(bytesRead, length);
    }
    Bytes file;
    machine::reserveOnLargePages(file, bytesRead);
    file.assign(block, block + bytesRead);
    return std::make_shared<const Bytes>(std::move(file));
}

// Puts the picture file into myImageData: the photo library's own if it is in memory, else a copy.
// Returns false if there was no memory for the copy.
bool loadFile(const AssetRepresentation* representation) {
    if (representation != nullptr) {
        if (auto file = representation->fileInMemory()) {
            imaging::myImageData = std::move(file);
            return true;
        }
    }
    const std::uint64_t size = representation != nullptr ? representation->size() : 0;
    const Block block = allocate(size);
    if (!block) return false;
    machine::preferLargePages(std::as_bytes(std::span(block.get(), size)));
    imaging::myImageData = readFile(representation, block.get(), size);
    return true;
}

void printPicture(std::unique_ptr<PictureRows> image) {
    const DotSize size = photoTargetSize(image ? image->width() : 0, image ? image->height() : 0);
    imaging::PrintBMP(size.width, size.height, std::move(image));
}

// Returns false, and prints nothing, if there was no memory for the picture file.
bool loadAndPrint(const AssetRepresentation* representation) {
    std::unique_ptr<PictureRows> image;
    try {
        if (!loadFile(representation)) return false;
        image = pictures::openPicture(imaging::myImageData).rows;
        if (image) image = pictures::rowsAhead(std::move(image), kRowsDecodedAhead);
    } catch (...) {  // no memory for the copy, or the photo library threw
        image.reset();
    }
    printPicture(std::move(image));
    return true;
}

// Runs on the background queue's thread.
void lookUp(PhotoLibrary* library, const URL& url, const std::shared_ptr<Lookup>& lookup) {
    const auto onResult = [lookup](const std::shared_ptr<const AssetRepresentation>& asset) {
        if (lookup->delivered.test_and_set()) return;
        if (loadAndPrint(asset.get())) lookup->done.release();
    };
    const auto onFailure = [lookup](const std::string& /*error*/) {
        if (!lookup->delivered.test_and_set()) lookup->done.release();
    };
    if (library == nullptr) {
        onFailure("no photo library is registered");
        return;
    }
    try {
        library->assetForURL(url, onResult, onFailure);
    } catch (...) {
        onFailure("the photo library failed");
    }
}

}  // namespace

bool ImageToBmp(const URL& url) {
    FileName = url.absoluteText();
    const std::shared_ptr<PhotoLibrary> library = platform::photoLibrary();
    const auto lookup = std::make_shared<Lookup>();
    try {
        platform::runInBackground([library, url, lookup] { lookUp(library.get(), url, lookup); });
    } catch (const std::exception&) {  // no thread: the handlers will never run
        return false;
    }
    lookup->done.acquire();
    return false;
}

}  // namespace tavio::intake
