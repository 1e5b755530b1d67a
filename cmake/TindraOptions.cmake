# Everything that holds for every target: language, warnings, sanitizers, speed of the build.

option(TINDRA_TESTS "Build the tests" ON)
option(TINDRA_BENCH "Build the benchmarks" OFF)
option(TINDRA_FUZZ "Build the fuzzers, which need clang, instead of the replay of their inputs" OFF)
option(TINDRA_PCH "Use one precompiled header for Qt" ON)
option(TINDRA_COVERAGE "Instrument for line coverage" OFF)
option(TINDRA_OPTIMISE_DEBUG "Optimise lightly in debug builds" OFF)
option(TINDRA_HARDEN "Make it hard to abuse a fault of the program" OFF)
set(TINDRA_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them")
set(TINDRA_LANGUAGE "ko" CACHE STRING "The language the editor speaks, whatever the system's is: ko or en")
set_property(CACHE TINDRA_LANGUAGE PROPERTY STRINGS ko en)
if(NOT TINDRA_LANGUAGE MATCHES "^(ko|en)$")
  message(FATAL_ERROR "TINDRA_LANGUAGE is \"${TINDRA_LANGUAGE}\"; the editor speaks ko and en")
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
# One target, "autogen", makes what moc makes without compiling; no generated header crosses modules.
set(CMAKE_GLOBAL_AUTOGEN_TARGET ON)
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(TINDRA_CCACHE ccache)
  if(TINDRA_CCACHE)
    # Two checkouts of the project share their objects, precompiled headers included.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${TINDRA_CCACHE})
  endif()
endif()

add_library(tindra_options INTERFACE)
target_include_directories(tindra_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(tindra_options INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
target_compile_definitions(tindra_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_JAVA_STYLE_ITERATORS
  QT_DEPRECATED_WARNINGS)

find_program(TINDRA_MOLD mold)
if(TINDRA_MOLD)
  target_link_options(tindra_options INTERFACE -fuse-ld=mold)
endif()
if(TINDRA_OPTIMISE_DEBUG)
  target_compile_options(tindra_options INTERFACE -O1 -g1)
endif()
if(TINDRA_HARDEN)
  # The editor decodes pictures from anywhere; this is what Debian builds its packages with.
  target_compile_options(tindra_options INTERFACE -fstack-protector-strong -fcf-protection)
  target_compile_definitions(tindra_options INTERFACE _FORTIFY_SOURCE=2)
  target_link_options(tindra_options INTERFACE -Wl,-z,relro,-z,now)
endif()
if(TINDRA_SANITIZE)
  target_compile_options(tindra_options INTERFACE
    -fsanitize=${TINDRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tindra_options INTERFACE -fsanitize=${TINDRA_SANITIZE})
endif()
if(TINDRA_FUZZ)
  # For the table of fuzz/run; the fuzzers' own counters take each check of the sanitizers for a branch of ours.
  target_compile_options(tindra_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(tindra_options INTERFACE -fprofile-instr-generate)
endif()
if(TINDRA_COVERAGE)
  # Unoptimised, since lines that were merged have no count of their own. With -pthread the counters are atomic;
  # the option that says so itself is unknown to ccache.
  target_compile_options(tindra_options INTERFACE --coverage -pthread -O0 -g1)
  target_link_options(tindra_options INTERFACE --coverage)
endif()
