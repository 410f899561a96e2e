# Warnings and sanitizers for every target of this project.
add_library(veltrace-options INTERFACE)
target_compile_options(veltrace-options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)

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

if(VELTRACE_COVERAGE)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "VELTRACE_COVERAGE needs clang, whose profiles llvm-cov reads.")
  endif()
  # The tests too: the linker keeps one copy of an inline function, and it may be a test's.
  target_compile_options(veltrace-options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(veltrace-options INTERFACE -fprofile-instr-generate)
endif()
