# The reliability parts of the test build, included by tests/: the replay of
# kept fuzz inputs through the same entry functions as the fuzzers (so a crash
# once found stays fixed), and the page loader for the fault sweep and the
# concurrency test, which work on real pages.
include(${PROJECT_SOURCE_DIR}/fuzz/FuzzEntries.cmake)

refprop_add_fuzz_entries(refprop_fuzz_entries)
add_executable(fuzz_replay ${PROJECT_SOURCE_DIR}/fuzz/replay/ReplayMain.cpp)
target_link_libraries(fuzz_replay PRIVATE refprop_fuzz_entries)
refprop_warnings(fuzz_replay)

foreach(name IN LISTS REFPROP_FUZZ_TARGETS)
  add_test(NAME fuzz_replay_${name} COMMAND fuzz_replay ${name} ${PROJECT_SOURCE_DIR}/fuzz/regressions/${name})
endforeach()

foreach(test_target IN ITEMS fault_sweep_test concurrency_test)
  if(TARGET ${test_target})
    target_link_libraries(${test_target} PRIVATE refpage_format)
  endif()
endforeach()
