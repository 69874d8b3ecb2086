// Starting a program that is kept.
#pragma once

#include <memory>
#include <string>

#include "TavioIpadSDK/helper/server.h"

namespace tavio::helper {

// Starts `program`, a path, as a keeper (keeper_protocol.h) for this process. It is no child of this
// process, so nothing is to be reaped. Returns none if it cannot be started.
std::shared_ptr<Server> startKeeper(const std::string& program);

}  // namespace tavio::helper
