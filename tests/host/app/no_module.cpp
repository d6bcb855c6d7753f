// A shared library that is no module.

extern "C" int unrelated() { return 0; }
