# Replays every kept fuzz input through the same entry function as its fuzzer,
# so a crash once found stays fixed. Included by the test build.
include(${PROJECT_SOURCE_DIR}/fuzz/FuzzEntries.cmake)

refprop_add_fuzz_entries(refprop_fuzz_entries)
add_executable(fuzz_replay ${PROJECT_SOURCE_DIR}/fuzz/replay/ReplayMain.cpp)
target_link_libraries(fuzz_replay PRIVATE refprop_fuzz_entries)
refprop_warnings(fuzz_replay)

foreach(name IN LISTS REFPROP_FUZZ_TARGETS)
  add_test(NAME fuzz_replay_${name} COMMAND fuzz_replay ${name} ${PROJECT_SOURCE_DIR}/fuzz/regressions/${name})
endforeach()
