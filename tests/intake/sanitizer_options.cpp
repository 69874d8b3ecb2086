// One test asks for a block that no machine has. Under a sanitizer that must give a null pointer,
// as it does without one, and not end the program.

// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers look for exactly these names
extern "C" {
const char* __asan_default_options();
const char* __tsan_default_options();

const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}
}
// NOLINTEND(bugprone-reserved-identifier)
