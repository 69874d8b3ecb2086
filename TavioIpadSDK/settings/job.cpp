#include "TavioIpadSDK/settings/job.h"

namespace tavio {

std::string LogoNumber;
constinit std::int32_t originalx = 0;
constinit std::int32_t originaly = 0;
constinit Text FileName;

}  // namespace tavio
