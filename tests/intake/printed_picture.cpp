#include "intake/printed_picture.h"

#include <cstddef>

#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/state.h"
#include "support/recording_transport.h"

namespace tavio::test {

Rows printedRows() {
    using namespace imaging;
    const auto stride = static_cast<std::size_t>(mDataWidth);
    Rows rows;
    for (std::size_t y = static_cast<std::size_t>(mHeight); y-- > 0;) {
        rows.emplace_back();
        for (std::size_t x = 0; x < static_cast<std::size_t>(mWidth); ++x)
            rows.back() += mDataArray.at(y * stride + x) == BLACK ? 'X' : ' ';
    }
    return rows;
}

std::string printedSize() {
    return std::to_string(imaging::mWidth) + " x " + std::to_string(imaging::mHeight);
}

bool graphicsWereSent() {
    const Bytes sent = transport().dataSent();
    return std::string(sent.begin(), sent.end()).find("<G") != std::string::npos;
}

}  // namespace tavio::test
