#include "TavioIpadSDK/encoder/state.h"

namespace tavio::encoder {

constinit FileHeader bmfile;
constinit InfoHeader bminfo;
constinit std::vector<LineParser> linemap;

}  // namespace tavio::encoder
