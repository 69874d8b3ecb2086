#include "TavioIpadSDK/imaging/state.h"

namespace tavio::imaging {

constinit std::int32_t mWidth = 0;
constinit std::int32_t mHeight = 0;
constinit std::int32_t mDataWidth = 0;
constinit std::int32_t mDataArrayLength = 0;
constinit machine::UnclearedBytes mDataArray;
constinit machine::UnclearedBytes mRawBitmapData;
constinit UInt32 k = 0;
constinit std::int32_t nRead = 0;
constinit std::array<Byte, 62> BMPHeader{};
constinit std::shared_ptr<const Bytes> myImageData;

constinit std::vector<UInt32> openSurface;

constinit Byte* Pixels = nullptr;
constinit Byte* Planes = nullptr;
constinit Byte* CompBuffer = nullptr;
constinit Byte* BitBuffer = nullptr;

}  // namespace tavio::imaging
