# One function per kind of target, so that all of a kind are built alike.
include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

if(NOT WIN32)
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
endif()

# Warnings, hardening, sanitizers and coverage for a target of ours.
function(korvex_flags target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                           -Wformat -Wformat-security -Werror=format-security)
  # Nothing in what is built tells the folder it was built in.
  target_compile_options(${target} PRIVATE -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
                                           -ffile-prefix-map=${PROJECT_BINARY_DIR}/=)
  # As distributions build. A Windows DLL has its own (windows.cmake), sanitizers check more than this.
  if(NOT WIN32 AND NOT KORVEX_SANITIZE)
    target_compile_options(${target} PRIVATE -fstack-protector-strong
                                             "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)  # GCC 105651: false alarms from std::string's operator+
  endif()
  if(KORVEX_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(KORVEX_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${KORVEX_SANITIZE} -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${KORVEX_SANITIZE})
  endif()
  if(KORVEX_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)  # threads count too
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# What every build of the library has in common.
function(korvex_library_settings target)
  target_include_directories(${target}
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  korvex_flags(${target})
endfunction()

# The library itself, shared or static; both are made of the same objects, compiled once.
function(korvex_library target kind)
  if(NOT TARGET korvex_objects)
    add_library(korvex_objects OBJECT ${library_sources})
    korvex_library_settings(korvex_objects)
  endif()
  add_library(${target} ${kind} $<TARGET_OBJECTS:korvex_objects>)
  add_library(korvex::${target} ALIAS ${target})
  korvex_library_settings(${target})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME korvex
    LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# A GoogleTest program test_<name> of all .cpp files in the current folder, labelled with its name.
function(korvex_test name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.c)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE korvex_static GTest::gtest_main ${ARGN})
  korvex_flags(test_${name})
  # Half of what a test takes to compile is GoogleTest's header, so one program compiles it for all.
  if(TARGET test_core AND NOT name STREQUAL core AND NOT sources MATCHES "\\.c(;|$)")
    target_precompile_headers(test_${name} REUSE_FROM test_core)
  elseif(name STREQUAL core)
    target_precompile_headers(test_${name} PRIVATE <gtest/gtest.h>)
  endif()
  target_compile_options(test_${name} PRIVATE $<$<CONFIG:Release>:-O1>)  # the library is what is to be fast
  gtest_discover_tests(test_${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${name})
endfunction()
