#include "tavio/printing/open_documents.h"

#include <algorithm>

namespace tavio::printing {

namespace {

constexpr std::size_t kMaxOpened = 4;

}  // namespace

std::shared_ptr<pdf::OpenDocument> OpenDocuments::of(const std::shared_ptr<const Bytes>& file,
                                                     const EncodeOptions& options) {
    const std::lock_guard lock(mutex_);
    const auto known = std::ranges::find(opened_, file, &Opened::file);
    if (known != opened_.end()) {
        std::rotate(known, known + 1, opened_.end());
    } else {
        auto document =
            std::make_shared<pdf::OpenDocument>(*file, options.pageLimits, options.helper);
        opened_.push_back({file, std::move(document)});
        if (opened_.size() > kMaxOpened) opened_.erase(opened_.begin());
    }
    return opened_.back().document;
}

}  // namespace tavio::printing
