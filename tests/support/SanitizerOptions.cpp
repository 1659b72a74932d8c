// The sanitizers' options, built into every test of a ZELTO_SANITIZE build, so that a test run by
// hand reports as it does under CTest. A finding ends the test with an error either way.

extern "C" {

#if defined(__SANITIZE_THREAD__)
// Only findings outside Zelto, each with its reason in the file.
const char* __tsan_default_options()
{
    return "suppressions=" ZELTO_TSAN_SUPPRESSIONS;
}
#endif

// Where the undefined behaviour came from, not only where it happened.
const char* __ubsan_default_options()
{
    return "print_stacktrace=1";
}

} // extern "C"
