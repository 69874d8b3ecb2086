// The export macro of the shared libraries: it marks everything that the public headers declare,
// and nothing else is visible outside.
#pragma once

#define TAVIO_API __attribute__((visibility("default")))

// For a class inside an exported one that only its own library uses.
#define TAVIO_INTERNAL __attribute__((visibility("hidden")))
