// What an application may use of the libraries: all that the public headers declare is marked, and
// nothing else can be seen from outside the shared libraries.
#pragma once

#define TAVIO_API __attribute__((visibility("default")))
