# One line per library, program, test and fuzz target. USES mirrors script/layers.txt.
#
# The layers are small static libraries pn_<name>, gathered into shared libraries of which every
# process holds one copy:
#   libcadhost.so      base geometry dxf font dwg db gi picture lisp app
#   libpipenetwork.so  network
#   pipenote.arx.so    platform registry record style draw manager module_app   (host/ loads it)
# A user outside a gathered library links the gathered one. Two exceptions keep a test small: a test that
# uses host layers below app only, or single module parts, links those parts themselves. A test that
# loads the module must say USES module, or it would hold the parts twice.

include(GoogleTest)

set(PN_HOST_PARTS base geometry dxf font dwg db gi picture lisp app)
set(PN_MODULE_PARTS platform registry record style draw manager module_app)

# pn_add_folder(<folder>): add_subdirectory when it has a CMakeLists.txt; looks again at every build.
function(pn_add_folder folder)
  file(GLOB list CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt")
  if(list)
    add_subdirectory(${folder})
  endif()
endfunction()

# pn_add_folders_below(): adds every folder below this one that has a CMakeLists.txt, at any depth.
# Those lists therefore add no sub-folders themselves.
function(pn_add_folders_below)
  file(GLOB_RECURSE lists CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}"
       "${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt")
  foreach(list IN LISTS lists)
    cmake_path(GET list PARENT_PATH folder)
    if(folder)
      add_subdirectory(${folder})
    endif()
  endforeach()
endfunction()

# The link names for a USES list, as seen by a part (base, record, ...) or by a PROGRAM.
function(pn_link_names out user)
  set(below_app TRUE)
  foreach(used IN LISTS ARGN)
    if(used STREQUAL "app" OR NOT used IN_LIST PN_HOST_PARTS)
      set(below_app FALSE)
    endif()
  endforeach()
  if(user IN_LIST PN_HOST_PARTS OR (user STREQUAL "PROGRAM" AND below_app))
    set(host_is_parts TRUE)
  else()
    set(host_is_parts FALSE)
  endif()

  set(names)
  foreach(used IN LISTS ARGN)
    if(used IN_LIST PN_HOST_PARTS)
      if(host_is_parts)
        list(APPEND names pn_${used})
      else()
        list(APPEND names cadhost)
      endif()
    elseif(used STREQUAL "network")
      list(APPEND names pipenetwork)
    elseif(used STREQUAL "module")
      list(APPEND names pipenote_module)
    elseif(used IN_LIST PN_MODULE_PARTS AND "module" IN_LIST ARGN)
      list(APPEND names pipenote_module)
    else()
      list(APPEND names pn_${used})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES names)
  set(${out} ${names} PARENT_SCOPE)
endfunction()

# For what modules are made of. A library with unique symbols (inline variables, static objects of inline
# functions) stays in the process for good, and so does every library that one is bound to; the
# static objects of a module must go when it is unloaded.
set(PN_UNLOADABLE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)

# pn_library(<name> [SOURCES a.cpp...] [USES other...] [LINKS outside::target...])
function(pn_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES;LINKS")
  pn_link_names(links ${name} ${arg_USES})
  if(arg_SOURCES)
    add_library(pn_${name} STATIC ${arg_SOURCES})
    target_link_libraries(pn_${name} PUBLIC ${links} ${arg_LINKS})
  else()
    add_library(pn_${name} INTERFACE)
    target_link_libraries(pn_${name} INTERFACE ${links} ${arg_LINKS})
  endif()
endfunction()

# pn_gather(<shared library> PARTS base geometry...): one shared library of whole parts. Parts that do
# not exist are left out; without any there is no target.
function(pn_gather target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "PARTS")
  set(objects)
  set(links)
  foreach(part IN LISTS arg_PARTS)
    if(NOT TARGET pn_${part})
      continue()
    endif()
    get_target_property(type pn_${part} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
      list(APPEND objects $<TARGET_OBJECTS:pn_${part}>)
    endif()
    get_target_property(part_links pn_${part} INTERFACE_LINK_LIBRARIES)
    if(part_links)
      list(APPEND links ${part_links})
    endif()
  endforeach()
  if(NOT objects)
    return()
  endif()
  foreach(part IN LISTS arg_PARTS)
    list(REMOVE_ITEM links pn_${part})
  endforeach()
  list(FILTER links EXCLUDE REGEX "LINK_ONLY")
  list(REMOVE_DUPLICATES links)
  # What is made here is passed on to users; libraries from outside stay a matter of this one, for
  # no header includes theirs.
  set(ours ${links})
  list(FILTER ours INCLUDE REGEX "^(cadhost|pipenetwork)$")
  set(others ${links})
  list(FILTER others EXCLUDE REGEX "^(cadhost|pipenetwork)$")
  add_library(${target} SHARED ${objects})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  target_link_libraries(${target} PUBLIC ${ours} PRIVATE ${others})
endfunction()

# pn_export(<shared library> <name>): users of the installed package link it as pipenote::<name>.
function(pn_export target name)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_compile_features(${target} INTERFACE cxx_std_20)
  target_include_directories(
    ${target} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/pipenote>)
endfunction()

# pn_name_module(<target> <file name> [EXPORT <set>]): a loadable module lib/<file name>.so, installed
# beside the others.
function(pn_name_module target file_name)
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".so" OUTPUT_NAME "${file_name}"
                                             INSTALL_RPATH "$ORIGIN/..")
  install(TARGETS ${target} ${ARGN} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/pipenote)
endfunction()

# pn_module(<target> NAME labeler.arx SOURCES a.cpp... [USES module app...] [LINKS ...])
function(pn_module target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME" "SOURCES;USES;LINKS")
  pn_link_names(links MODULE ${arg_USES})
  add_library(${target} SHARED ${arg_SOURCES})
  target_compile_options(${target} PRIVATE ${PN_UNLOADABLE})
  target_link_libraries(${target} PRIVATE ${links} ${arg_LINKS})
  pn_name_module(${target} ${arg_NAME})
endfunction()

# pn_program(<name> SOURCES a.cpp... [USES app...] [LINKS ...] [INSTALL])
function(pn_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "INSTALL" "" "SOURCES;USES;LINKS")
  pn_link_names(links PROGRAM ${arg_USES})
  add_executable(${name} ${arg_SOURCES})
  if(PIPENOTE_SANITIZE OR PIPENOTE_FUZZ)
    target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/leak_suppressions.cpp")
  else()
    # A drawing is millions of small pieces of memory. Nothing refers to the allocator by name, so the
    # linker is told to keep it; it must stand before the C library in the process.
    target_link_libraries(${name} PRIVATE -Wl,--push-state,--no-as-needed mimalloc -Wl,--pop-state)
  endif()
  target_link_libraries(${name} PRIVATE ${links} ${arg_LINKS})
  if(arg_INSTALL)
    set(libraries "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "${libraries};${libraries}/pipenote")
    install(TARGETS ${name} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endfunction()

set(PN_TEST_ENVIRONMENT "UBSAN_OPTIONS=print_stacktrace=1")

# pn_test(<name> SOURCES x_test.cpp... [USES base...] [LINKS ...]): a GoogleTest program, each test known
# to CTest by its own name. PN_FIXTURES is the folder of the sample drawings.
function(pn_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES;LINKS")
  if(NOT BUILD_TESTING)
    return()
  endif()
  pn_program(${name} SOURCES ${arg_SOURCES} USES ${arg_USES} LINKS ${arg_LINKS} GTest::gmock
                                                                      GTest::gtest_main)
  target_compile_options(${name} PRIVATE -O0)  # optimising what tests say takes longer than running it
  target_compile_definitions(${name} PRIVATE PN_FIXTURES="${PROJECT_SOURCE_DIR}/tests/fixtures")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${name} PRIVATE -fpch-preprocess)  # lets the cache see through the header
    target_precompile_headers(${name} REUSE_FROM pn_test_pch)
  endif()
  gtest_discover_tests(
    ${name}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 120
    PROPERTIES TIMEOUT 300 ENVIRONMENT "${PN_TEST_ENVIRONMENT}")
endfunction()

# pn_python_test(<name> SCRIPT x_test.py [ARGS ...]): a Python unittest, with the folder tests/regress (the
# independent reader) importable. Debian's interpreter, because that one has ezdxf.
function(pn_python_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCRIPT" "ARGS")
  add_test(NAME ${name} COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_SOURCE_DIR}/${arg_SCRIPT}"
                                ${arg_ARGS})
  set_tests_properties(
    ${name} PROPERTIES TIMEOUT 300
            ENVIRONMENT "${PN_TEST_ENVIRONMENT};PYTHONPATH=${PROJECT_SOURCE_DIR}/tests/regress")
endfunction()

# pn_fuzz(<name> SOURCES x_fuzz.cpp [USES dxf...]): LLVMFuzzerTestOneInput over fuzz/corpus/<name>. In an
# ordinary build it replays the corpus as a test, so that no target rots.
function(pn_fuzz name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES;LINKS")
  set(program fuzz_${name})
  set(corpus "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}")
  if(PIPENOTE_FUZZ)
    pn_program(${program} SOURCES ${arg_SOURCES} USES ${arg_USES} LINKS ${arg_LINKS})
    target_link_options(${program} PRIVATE -fsanitize=fuzzer)
    set_property(GLOBAL APPEND PROPERTY PN_FUZZ_TARGETS ${name})
  else()
    pn_program(${program} SOURCES ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp
               USES ${arg_USES} LINKS ${arg_LINKS})
    add_test(NAME ${program} COMMAND ${program} "${corpus}")
    set_tests_properties(${program} PROPERTIES TIMEOUT 300 ENVIRONMENT "${PN_TEST_ENVIRONMENT}")
  endif()
endfunction()
