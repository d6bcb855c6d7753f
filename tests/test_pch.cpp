// Gives the precompiled test header a target of its own; see tests/CMakeLists.txt.
