// What the sanitizers do with a defect in the program under test, or in a test. Left to themselves they end a program
// with exit status 1, which is that of an import that failed properly; a test that expects the failure would never
// know.

extern "C" {

const char* __asan_default_options();   // NOLINT(bugprone-reserved-identifier)
const char* __ubsan_default_options();  // NOLINT(bugprone-reserved-identifier)

const char* __asan_default_options() {
    return "abort_on_error=1";
}

const char* __ubsan_default_options() {
    return "abort_on_error=1:print_stacktrace=1";
}
}
