// The root object class that applications may derive from.
#pragma once

#include "TavioIpadSDK/machine/export.h"

namespace tavio::platform {

class TAVIO_API Object {};

}  // namespace tavio::platform
