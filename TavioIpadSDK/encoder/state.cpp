#include "TavioIpadSDK/encoder/state.h"

namespace tavio::encoder {

constinit FileHeader bmfile;
constinit InfoHeader bminfo;
std::vector<LineParser> linemap(LINEMAPMAX);

}  // namespace tavio::encoder
