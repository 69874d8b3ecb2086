// How a module-wide variable that has a constructor or a destructor is defined.
//
//   TAVIO_MODULE_STATE std::vector<UInt32> openSurface;
//   TAVIO_MODULE_TEXT std::string PrinterPath = "<P1>";
//
// A global object of the application may open a session in its constructor and close it in its
// destructor, in whatever order the program was linked. So these variables have their value before
// the first constructor of a global object runs, and keep it until the last destructor has run.
#pragma once

#include <string>  // tells which standard library this is

// The value is made at compile time. The destructor, where it cannot be left out, runs after all
// others: an object with the first priority that a program may use is destroyed last.
#if defined(__clang__)
#define TAVIO_MODULE_STATE [[clang::no_destroy]] constinit
#else
#define TAVIO_MODULE_STATE [[gnu::init_priority(101)]] constinit
#endif

// clang++ cannot make a text of libstdc++ before release 13 at compile time. There it is made at
// run time, before all objects that have no priority.
#if defined(__clang__) && defined(_GLIBCXX_RELEASE) && _GLIBCXX_RELEASE < 13
#define TAVIO_MODULE_TEXT [[clang::no_destroy, gnu::init_priority(101)]]
#else
#define TAVIO_MODULE_TEXT TAVIO_MODULE_STATE
#endif
