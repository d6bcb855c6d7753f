# How everything is compiled: warnings, sanitizers, where results go, the compiler cache.

option(PIPENOTE_SANITIZE "AddressSanitizer and UndefinedBehaviorSanitizer in every target" OFF)
option(PIPENOTE_FUZZ "Fuzz targets driven by libFuzzer (clang); otherwise they replay their corpus" OFF)

# Optimised, asserts off, line tables for backtraces.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g")

# Modules and programs find the libraries beside them, in the build folder and installed alike.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_BUILD_RPATH "$ORIGIN/../lib")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

include_directories("${PROJECT_SOURCE_DIR}")
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Everything is exported; calls inside one library still bind directly.
  add_compile_options(-Werror -fno-semantic-interposition)
  add_link_options($<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>>:LINKER:-Bsymbolic-functions>)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # This release sees overlapping and overlong copies in inlined std::string that are not there.
    add_compile_options(-Wno-restrict -Wno-array-bounds -Wno-stringop-overflow
                        -Wno-stringop-overread)
  endif()
  # A library that calls upwards does not link.
  add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:LINKER:-z,defs>)
endif()

if(PIPENOTE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
                      -O1 -g1)
  add_link_options(-fsanitize=address,undefined)
endif()

if(PIPENOTE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address -fno-omit-frame-pointer -O1 -g1)
  add_link_options(-fsanitize=address)
endif()

# The cache is shared between build folders: the directory is not part of the key, and a precompiled
# header is judged by its content.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND};-E;env;CCACHE_NOHASHDIR=1;CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime;${CCACHE}"
  )
endif()
