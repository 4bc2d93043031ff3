# Warnings, sanitizers and the compiler cache. Only our own targets ask for them:
# a target calls torvel_compile(<target>).

set(TORVEL_SANITIZE "" CACHE STRING "Checks to build with, as -fsanitize= takes them")
option(TORVEL_HARDEN "Checked library calls, guarded stacks and read-only relocations" OFF)
option(TORVEL_CCACHE "Use ccache when it is installed" ON)

if(TORVEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(TORVEL_CCACHE_PROGRAM ccache)
  if(TORVEL_CCACHE_PROGRAM)
    # The cache stays below build/, so that nothing is written outside the checkout.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        "CCACHE_DIR=${CMAKE_SOURCE_DIR}/build/ccache" CCACHE_SLOPPINESS=pch_defines,time_macros
        "${TORVEL_CCACHE_PROGRAM}")
  endif()
endif()

if(TORVEL_SANITIZE)
  # Without vptr: the plug-in hides its type information, which that check takes for a wrong type.
  # The fuzzers' own main comes with their programs, so the link goes without "fuzzer-no-link".
  string(REPLACE "fuzzer-no-link," "" linked "${TORVEL_SANITIZE}")
  add_compile_options(-fsanitize=${TORVEL_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${linked})
  if(TORVEL_SANITIZE MATCHES undefined)
    add_compile_options(-fno-sanitize=vptr -fno-sanitize-recover=undefined)
    add_link_options(-fno-sanitize=vptr)
  endif()
endif()
if(TORVEL_HARDEN)
  add_compile_options(-D_FORTIFY_SOURCE=2 -fstack-protector-strong)
  add_link_options(-Wl,-z,relro,-z,now)
endif()

# The warnings of every target of ours, as errors.
function(torvel_compile target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /WX /EHsc /utf-8 /permissive-)
    target_compile_definitions(${target} PRIVATE NOMINMAX)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")  # it sees ghosts in <regex> and in std::variant
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
  endif()
  target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS)
endfunction()

# Standard and library headers that nearly every source of the target includes anyway, read once.
# Headers of ours stay out, so that each source keeps including what it uses.
function(torvel_precompile target)
  target_precompile_headers(${target} PRIVATE ${ARGN})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -fpch-preprocess)  # for ccache
  endif()
endfunction()
