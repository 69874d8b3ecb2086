#include "tavio/printing/source.h"

#include <utility>

namespace tavio::printing {

Source Source::file(std::string path) {
    return {std::move(path), nullptr};
}

Source Source::bytes(Bytes bytes, std::string name) {
    return {std::move(name), std::make_shared<const Bytes>(std::move(bytes))};
}

Source Source::bytes(std::shared_ptr<const Bytes> bytes, std::string name) {
    if (!bytes) bytes = std::make_shared<const Bytes>();
    return {std::move(name), std::move(bytes)};
}

}  // namespace tavio::printing
