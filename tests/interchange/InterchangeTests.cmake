# What other tools make of the interchange formats, through Debian's own readers; each
# test exits 77 (skipped, saying why) when its Python module is not installed.
#   interchange_sphinx  Sphinx resolves references through `refpage inventory`'s objects.inv
#   interchange_schema  python3-jsonschema: `refpage schema` accepts every good page, refuses the bad ones
if(NOT REFPAGE_PYTHON3)
  return()
endif()
add_test(NAME interchange_sphinx
  COMMAND ${REFPAGE_PYTHON3} ${CMAKE_CURRENT_LIST_DIR}/sphinx_inventory_test.py
    --refpage $<TARGET_FILE:refpage> --pagegen $<TARGET_FILE:pagegen>)
add_test(NAME interchange_schema
  COMMAND ${REFPAGE_PYTHON3} ${CMAKE_CURRENT_LIST_DIR}/page_schema_test.py --refpage $<TARGET_FILE:refpage>
    --pages ${PROJECT_SOURCE_DIR}/tests/data/good --pages ${REFPROP_GENERATED_PAGES}
    --pages ${REFPROP_SHARED_DIR}/corpus/numpy --bad ${PROJECT_SOURCE_DIR}/tests/data/bad/wrong_type.json)
set_tests_properties(interchange_sphinx interchange_schema PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300)
set_tests_properties(interchange_schema PROPERTIES FIXTURES_REQUIRED generated_pages)
