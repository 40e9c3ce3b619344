// Linked into the test programs that leave directories open: the leak checker has to see who called
// into the C library, or it could not tell these leaks from others.
extern "C" __attribute__((visibility("default"), used)) const char* __asan_default_options() {
  return "fast_unwind_on_malloc=0";
}
