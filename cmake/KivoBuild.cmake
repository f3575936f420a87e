# How every target of the project is built, and the helpers that its folders use.
include_guard()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(KIVO_SANITIZE_ADDRESS "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(KIVO_SANITIZE_THREAD "Build with ThreadSanitizer" OFF)
option(KIVO_FUZZERS "Build the fuzz targets with libFuzzer (clang only); otherwise they replay their corpus" OFF)

# all_verify_interface_header_sets compiles each header alone; it isn't part of the default build.
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

# The program's tree in the build folder has the shape of the installed one:
#   app/{kivo,libkivo.so,KVLibExport.so,skin/public/}  app/plugin/tunehive/{tunehive.so,…}
set(KIVO_APP_DIR "${CMAKE_BINARY_DIR}/app")
set(KIVO_PLUGIN_DIR "${KIVO_APP_DIR}/plugin/tunehive")

# Everything of ours is compiled and linked with this.
add_library(kivo_options INTERFACE)
target_include_directories(kivo_options INTERFACE "${CMAKE_SOURCE_DIR}")
# A unique symbol keeps a library mapped after dlclose; the plug-in must really unload.
target_compile_options(kivo_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
target_compile_definitions(kivo_options INTERFACE $<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>)
if(KIVO_SANITIZE_ADDRESS)
  target_compile_options(kivo_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                -fno-omit-frame-pointer)
  target_link_options(kivo_options INTERFACE -fsanitize=address,undefined)
endif()
if(KIVO_SANITIZE_THREAD)
  target_compile_options(kivo_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(kivo_options INTERFACE -fsanitize=thread)
endif()
if(KIVO_FUZZERS)
  target_compile_options(kivo_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                -fno-sanitize-recover=undefined)
  target_link_options(kivo_options INTERFACE -fsanitize=address,undefined)
endif()

add_library(kivo_warnings INTERFACE)
target_compile_options(
  kivo_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wsign-conversion
            -Wold-style-cast
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wcast-align
            -Wformat=2
            -Werror
            $<$<CXX_COMPILER_ID:GNU>:-Wuseless-cast>
            $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
            $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>)

# kivo_library(NAME SOURCES … HEADERS … [LINK …] [PRIVATE_LINK …]): a folder's static library.
# Headers form a file set, so that each is also compiled alone (target NAME_verify_interface_header_sets).
function(kivo_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;LINK;PRIVATE_LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_SOURCE_DIR}" FILES ${ARG_HEADERS})
  target_link_libraries(${name} PUBLIC kivo_options ${ARG_LINK} PRIVATE kivo_warnings ${ARG_PRIVATE_LINK})
endfunction()

# kivo_interface(NAME HEADERS … [LINK …]): a folder of headers alone.
function(kivo_interface name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  add_library(${name} INTERFACE)
  target_sources(${name} INTERFACE FILE_SET HEADERS BASE_DIRS "${CMAKE_SOURCE_DIR}" FILES ${ARG_HEADERS})
  target_link_libraries(${name} INTERFACE kivo_options ${ARG_LINK})
endfunction()

# kivo_test(NAME SOURCES … LINK … [LABELS …] [TIMEOUT seconds] [ENVIRONMENT …] [WHOLE]): a GoogleTest program.
# The label `unit` says: quick logic, also run under AddressSanitizer; `threads`: under ThreadSanitizer.
# WHOLE: one process runs all of its tests, where the start of one is dear.
function(kivo_test name)
  cmake_parse_arguments(ARG "WHOLE" "TIMEOUT" "SOURCES;LINK;LABELS;ENVIRONMENT" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kivo_options kivo_warnings ${ARG_LINK} GTest::gtest GTest::gtest_main)
  if(ARG_WHOLE)
    kivo_test_properties(properties ${name} "${ARG_LABELS}" "${ARG_ENVIRONMENT}")
    add_test(NAME ${name} COMMAND ${name})
    cmake_language(EVAL CODE "set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ${properties})")
    return()
  endif()
  # Without NO_PRETTY_VALUES the names of parametrised tests hold addresses and change at each run.
  gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT ${ARG_TIMEOUT})
  # Properties that are lists don't survive gtest_discover_tests, so they follow in a file of their own.
  kivo_test_properties(properties ${name} "${ARG_LABELS}" "${ARG_ENVIRONMENT}")
  set(file "${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake")
  file(WRITE "${file}" "if(${name}_TESTS)\n  set_tests_properties(\${${name}_TESTS} PROPERTIES ${properties})\nendif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${file}")
endfunction()

# What every test gets: its labels and a surrounding that doesn't depend on the desktop. A later entry
# of `environment` wins. The target joins unit_tests or threads_tests by its labels. The result is
# text for set_tests_properties.
function(kivo_test_properties result target labels environment)
  set(surrounding QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
                  "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/scripts/checks/lsan.txt:print_suppressions=0")
  list(APPEND surrounding ${environment})
  foreach(label IN ITEMS unit threads)
    if(label IN_LIST labels)
      add_dependencies(${label}_tests ${target})
    endif()
  endforeach()
  set(${result} "ENVIRONMENT \"${surrounding}\" LABELS \"${labels}\"" PARENT_SCOPE)
endfunction()
add_custom_target(unit_tests)
add_custom_target(threads_tests)

# kivo_bench(NAME SOURCES … LINK …): a Google Benchmark program; the run target of scripts/bench.
function(kivo_bench name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} EXCLUDE_FROM_ALL ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kivo_options kivo_warnings ${ARG_LINK} benchmark::benchmark)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/benchmarks")
  add_dependencies(benchmarks ${name})
endfunction()
add_custom_target(benchmarks)

# kivo_fuzz(NAME SOURCES … LINK …): a target of scripts/fuzz. Built by other compilers it has a plain
# main and replays fuzz/corpus/NAME as a test of that name.
function(kivo_fuzz name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  set(target ${name}_fuzz)
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE kivo_options kivo_warnings ${ARG_LINK})
  add_dependencies(fuzzers ${target})
  if(KIVO_FUZZERS)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzzers")
    return()
  endif()
  target_sources(${target} PRIVATE "${CMAKE_SOURCE_DIR}/fuzz/ReplayMain.cpp")
  kivo_test_properties(properties ${target} unit "")
  add_test(NAME fuzz.${name} COMMAND ${target} "${CMAKE_SOURCE_DIR}/fuzz/corpus/${name}")
  cmake_language(EVAL CODE "set_tests_properties(fuzz.${name} PROPERTIES TIMEOUT 60 ${properties})")
endfunction()
add_custom_target(fuzzers)
