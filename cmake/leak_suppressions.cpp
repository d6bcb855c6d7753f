// What the leak checker of sanitized programs passes over: fontconfig does not give back all that
// it makes while it reads its own configuration.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
extern "C" const char* __lsan_default_options() { return "print_suppressions=0"; }
