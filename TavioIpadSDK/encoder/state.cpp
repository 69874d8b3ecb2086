#include "TavioIpadSDK/encoder/state.h"

#include "TavioIpadSDK/machine/module_state.h"

namespace tavio::encoder {

constinit FileHeader bmfile;
constinit InfoHeader bminfo;
TAVIO_MODULE_STATE std::vector<LineParser> linemap;

}  // namespace tavio::encoder
