// Documents of which pages are drawn: each is handed to the drawing program once.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pdf/open_document.h"
#include "tavio/printing/job.h"

namespace tavio::printing {

// May be used by several threads at once.
class OpenDocuments {
  public:
    // The document with these bytes; the same for the same pointer, as long as it is one of the last
    // few. The limits and the program of `options` must be the same in every call. Throws
    // std::bad_alloc.
    std::shared_ptr<pdf::OpenDocument> of(const std::shared_ptr<const Bytes>& file,
                                          const EncodeOptions& options);

  private:
    struct Opened {
        std::shared_ptr<const Bytes> file;  // kept, so that no other bytes have its address
        std::shared_ptr<pdf::OpenDocument> document;
    };

    std::mutex mutex_;
    std::vector<Opened> opened_;  // the one that was asked for last at the end
};

// What the elements of some tickets are encoded with.
struct Encoding {
    const EncodeOptions& options;
    OpenDocuments& documents;
};

}  // namespace tavio::printing
