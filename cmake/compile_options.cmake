# Warnings and sanitizers for every target of this project.
add_library(veltrace-options INTERFACE)
target_compile_options(veltrace-options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Nobody puts a function of their own in place of one of these; clang takes that for granted.
  target_compile_options(veltrace-options INTERFACE -fno-semantic-interposition)
endif()

if(VELTRACE_HARDEN)
  target_compile_definitions(veltrace-options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=3>  # needs optimisation
    _GLIBCXX_ASSERTIONS)
  target_compile_options(veltrace-options INTERFACE
    -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
  # All symbols are found at the start, so that the table of their addresses can be made read-only.
  target_link_options(veltrace-options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
  include(CheckPIESupported)  # has programs linked as they are compiled: position-independent
  check_pie_supported(LANGUAGES C CXX)
endif()

if(VELTRACE_SANITIZE)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "VELTRACE_SANITIZE needs clang: g++ has no unsigned-integer-overflow check.")
  endif()
  set(sanitizers address,undefined,float-cast-overflow,unsigned-integer-overflow)
  target_compile_options(veltrace-options INTERFACE
    -fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer
    # Unsigned wrap is an error in this project's code; the standard library wraps on purpose.
    -fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/sanitizer_ignore.txt)
  target_link_options(veltrace-options INTERFACE -fsanitize=${sanitizers})
endif()

if(VELTRACE_SANITIZE_THREADS)
  target_compile_options(veltrace-options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(veltrace-options INTERFACE -fsanitize=thread)
endif()

# For the module's objects and for the tests linked with them: of an inline function the linker keeps
# one copy, and it may be a test's.
add_library(veltrace-coverage INTERFACE)
if(VELTRACE_COVERAGE)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "VELTRACE_COVERAGE needs clang, whose profiles llvm-cov reads.")
  endif()
  target_compile_options(veltrace-coverage INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(veltrace-coverage INTERFACE -fprofile-instr-generate)
endif()

if(VELTRACE_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "VELTRACE_FUZZ needs clang, which comes with libFuzzer.")
  endif()
  target_compile_options(veltrace-options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(veltrace-options INTERFACE -fsanitize=fuzzer-no-link)
endif()
