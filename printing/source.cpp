#include "tavio/printing/source.h"

#include <exception>
#include <utility>

namespace tavio::printing {

Source Source::file(std::string path) {
    return {std::move(path), nullptr};
}

template <typename MakeContent>
Source Source::withContent(std::string name, MakeContent makeContent) {
    Source source(std::move(name), nullptr);
    try {
        source.content_ = makeContent();
    } catch (const std::exception&) {
        source.isIncomplete_ = true;
    }
    return source;
}

Source Source::bytes(Bytes bytes, std::string name) {
    return withContent(std::move(name),
                       [&bytes] { return std::make_shared<const Bytes>(std::move(bytes)); });
}

Source Source::bytes(std::shared_ptr<const Bytes> bytes, std::string name) {
    return withContent(std::move(name), [&bytes] {
        return bytes ? std::move(bytes) : std::make_shared<const Bytes>();
    });
}

}  // namespace tavio::printing
