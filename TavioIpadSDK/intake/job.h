// The job's variables lie in settings/job.h. This name is kept for applications that include it.
#pragma once

#include "TavioIpadSDK/settings/job.h"
