// The end of a connect() that was not done at once.
#pragma once

#include "tavio/links/stream_link.h"

namespace tavio::links {

// Waits until the socket's connect() has come to its end: 0, or the error that it ended with;
// ETIMEDOUT at the waiter's deadline, ECANCELED where the link was cancelled.
int finishConnecting(int descriptor, Waiter& waiter);

}  // namespace tavio::links
