// The root object class that applications may derive from.
#pragma once

namespace tavio::platform {

class Object {};

}  // namespace tavio::platform
