// The export macro of the shared libraries: it marks everything that the public headers declare,
// and nothing else is visible outside.
#pragma once

#define TAVIO_API __attribute__((visibility("default")))
