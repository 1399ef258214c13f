# SPDX-License-Identifier: MIT
# Compiler settings of all our targets, and how a folder becomes a library or a test program.

find_package(Threads REQUIRED)

add_library(quillmere_options INTERFACE)
target_compile_options(quillmere_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  target_compile_options(quillmere_options INTERFACE -Wthread-safety)
endif()
if(QUILLMERE_WERROR)
  target_compile_options(quillmere_options INTERFACE -Werror)
endif()
if(QUILLMERE_SANITIZE)
  target_compile_options(quillmere_options INTERFACE -fsanitize=${QUILLMERE_SANITIZE} -fno-omit-frame-pointer
                         -fno-sanitize-recover=all)
  target_link_options(quillmere_options INTERFACE -fsanitize=${QUILLMERE_SANITIZE})
endif()
target_include_directories(quillmere_options INTERFACE ${CMAKE_SOURCE_DIR}/src)

set(QUILLMERE_PCH <algorithm> <atomic> <cstdint> <filesystem> <functional> <map> <memory> <mutex> <optional>
    <string> <string_view> <unordered_map> <utility> <vector>)

# quillmere_library(NAME SOURCES ... LINKS ...): one folder of the core. It links only what it may use,
# so that a call to a floor above does not link. All share one set of precompiled headers.
function(quillmere_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC quillmere_options ${ARG_LINKS})
  if(name STREQUAL quillmere_foundation)
    target_precompile_headers(${name} PRIVATE ${QUILLMERE_PCH})
  else()
    target_precompile_headers(${name} REUSE_FROM quillmere_foundation)
  endif()
endfunction()

# Precompiled headers for tests, made once: they hold only for targets with the same code model, and
# programs have another one than libraries (-fPIE, but -fPIC with Qt).
function(quillmere_test_headers name)
  cmake_parse_arguments(ARG "" "" "LINKS;OPTIONS;HEADERS" ${ARGN})
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp "// Carries precompiled headers.\n")
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE quillmere_options ${ARG_LINKS} GTest::gmock)
  target_compile_options(${name} PRIVATE ${ARG_OPTIONS})
  target_precompile_headers(${name} PRIVATE ${QUILLMERE_PCH} <gtest/gtest.h> ${ARG_HEADERS})
endfunction()

# quillmere_test(NAME SOURCES ... LINKS ...): one GoogleTest program for one folder.
function(quillmere_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE quillmere_options ${ARG_LINKS} GTest::gmock GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  if(ARG_LINKS MATCHES quillmere_ui)
    target_precompile_headers(${name} REUSE_FROM quillmere_ui_test_headers)
    # Qt is not built with the thread sanitizer, so it must leave Qt's own threads out.
    set(environment PROPERTIES ENVIRONMENT TSAN_OPTIONS=ignore_noninstrumented_modules=1)
  else()
    target_precompile_headers(${name} REUSE_FROM quillmere_test_headers)
    set(environment "")
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST ${environment})
endfunction()

if(QUILLMERE_UI)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets)
  if(QUILLMERE_SVG)
    find_package(Qt6 REQUIRED COMPONENTS Svg)
  endif()
  if(CMAKE_CROSSCOMPILING)
    find_package(Qt6LinguistTools REQUIRED PATHS ${QT_HOST_PATH_CMAKE_DIR} NO_DEFAULT_PATH
                 NO_CMAKE_FIND_ROOT_PATH)
  else()
    find_package(Qt6 REQUIRED COMPONENTS LinguistTools)
  endif()
endif()

# quillmere_ui_library(NAME SOURCES ... LINKS ...): one folder of the window program. Headers that hold
# Q_OBJECT stand among the sources. All share one set of precompiled headers, that of the toolkit.
function(quillmere_ui_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_compile_definitions(${name} PUBLIC QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
  target_link_libraries(${name} PUBLIC quillmere_options ${ARG_LINKS} Qt6::Widgets
                        $<$<BOOL:${QUILLMERE_SVG}>:Qt6::Svg>)
  if(name STREQUAL quillmere_ui_toolkit)
    target_precompile_headers(${name} PRIVATE ${QUILLMERE_PCH} <QtWidgets>)
  else()
    target_precompile_headers(${name} REUSE_FROM quillmere_ui_toolkit)
  endif()
endfunction()
