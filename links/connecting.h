// Waiting for a connect() in progress.
#pragma once

#include "tavio/links/stream_link.h"

namespace tavio::links {

// Waits for the end of the socket's connect(). Returns 0 or its error, ETIMEDOUT at the waiter's
// deadline, ECANCELED if the link was cancelled.
int finishConnecting(int descriptor, Waiter& waiter);

}  // namespace tavio::links
