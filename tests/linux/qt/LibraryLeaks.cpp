// Fontconfig 2.14.1 keeps what it has looked up for fallback fonts and never releases it. The leak
// sanitizer asks this function, if a program has it, for what is not to be reported.
extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
