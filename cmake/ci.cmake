# What CI runs, as tests of the `ci` preset; each one is a whole check or another preset's workflow.
enable_testing()

# All take turns: every one of them uses the whole machine.
function(add_check name)
  add_test(NAME ${name} COMMAND ${ARGN} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
  set_tests_properties(${name} PROPERTIES RUN_SERIAL ON TIMEOUT 3600)
endfunction()

add_check(format scripts/check-format)
add_check(scripts shellcheck .ci/run scripts/check-cppcheck scripts/check-format scripts/check-tidy
  scripts/fuzz scripts/install-packages scripts/mutate scripts/run scripts/test)
foreach(preset IN ITEMS release bench asan tsan coverage)
  add_check(${preset} ${CMAKE_COMMAND} --workflow --preset ${preset})
endforeach()

# That the targets still are programs of libFuzzer; what they found before is replayed elsewhere.
add_check(fuzz scripts/fuzz classic 10)

add_check(cppcheck scripts/check-cppcheck)
add_check(tidy scripts/check-tidy)
