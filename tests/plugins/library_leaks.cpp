// SPDX-License-Identifier: MIT
// What the leak sanitizer leaves out: OpenImageIO jumps over a text of 31 bytes when a PNG file ends too early, and an
// encoder behind it keeps its tables when a save fails. To know them by their library, stacks are walked to the end.
// The sanitizer finds both by name.

extern "C" __attribute__((visibility("default"))) char const* __lsan_default_suppressions() {
    return "leak:libOpenImageIO\nleak:libx265\n";
}

extern "C" __attribute__((visibility("default"))) char const* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}
