#include "TavioIpadSDK/settings/job.h"

#include "TavioIpadSDK/machine/module_state.h"

namespace tavio {

TAVIO_MODULE_TEXT std::string LogoNumber;
constinit std::int32_t originalx = 0;
constinit std::int32_t originaly = 0;
TAVIO_MODULE_STATE Text FileName;

}  // namespace tavio
