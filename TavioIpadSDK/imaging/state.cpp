#include "TavioIpadSDK/imaging/state.h"

#include "TavioIpadSDK/machine/module_state.h"

namespace tavio::imaging {

constinit std::int32_t mWidth = 0;
constinit std::int32_t mHeight = 0;
constinit std::int32_t mDataWidth = 0;
constinit std::int32_t mDataArrayLength = 0;
TAVIO_MODULE_STATE machine::UnclearedBytes mDataArray;
TAVIO_MODULE_STATE machine::UnclearedBytes mRawBitmapData;
constinit UInt32 k = 0;
constinit std::int32_t nRead = 0;
constinit std::array<Byte, 62> BMPHeader{};
TAVIO_MODULE_STATE std::shared_ptr<const Bytes> myImageData;

TAVIO_MODULE_STATE std::vector<UInt32> openSurface;

constinit Byte* Pixels = nullptr;
constinit Byte* Planes = nullptr;
constinit Byte* CompBuffer = nullptr;
constinit Byte* BitBuffer = nullptr;

}  // namespace tavio::imaging
