// The kept programs of this process.
#pragma once

#include <memory>
#include <string>

#include "TavioIpadSDK/helper/server.h"

namespace tavio::helper {

// The keeper of `program`, a path; started where there is none, where the one before has ended or is
// another process's, or where the environment (keptEnvironment) has changed since. none: the program is
// to be started by itself; at the first call, too, since that is sooner done for a lone question. Any
// thread may call it.
std::shared_ptr<Server> sharedKeeper(const std::string& program);

// To be told when a keeper cannot be reached any more, or closed a leash without an ending. It is not
// handed out again. A program whose keepers never get ready is not kept any more.
void dropKeeper(const std::string& program, const std::shared_ptr<Server>& keeper);

// Lets go of all keepers. They end, unless a question or an opened input still uses them.
void endKeepers();

}  // namespace tavio::helper
