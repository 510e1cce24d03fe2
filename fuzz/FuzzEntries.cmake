# The fuzz entry functions as one static library, linked by the libFuzzer
# targets (fuzz build) and by the replay of kept inputs (normal build).
function(refprop_add_fuzz_entries target)
  file(GLOB entry_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/fuzz/entries/*.cpp)
  add_library(${target} STATIC ${entry_sources})
  # tests/ for the host values and property tables the tests share (tests/support).
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/fuzz/entries ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${target} PUBLIC refpage_format reference_glue reference_property)
  refprop_warnings(${target})
endfunction()

# Names of the fuzz targets; each keeps its crash reproducers in fuzz/regressions/<name>/.
set(REFPROP_FUZZ_TARGETS page_loader refitem_operations)
