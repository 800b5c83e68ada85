# The printing test's Windows side: prints with the game's own code, then looks at the rendered pages.
add_executable(print_probe ${CMAKE_SOURCE_DIR}/tests/print/print_probe_main_win32.cpp
                           ${CMAKE_SOURCE_DIR}/tests/print/page_check.cpp)
target_link_libraries(print_probe PRIVATE tavirel_core)

# Both jobs through a private CUPS server with a PDF printer (pages kept in print-pages/), and both
# ending silently with no server to reach. They share one Wine prefix of their own, so they take turns.
foreach(mode cups no-printer)
  if(mode STREQUAL "cups")
    set(name Print.PagesThroughCupsPdf)
  else()
    set(name Print.JobsEndSilentlyWithoutAPrinter)
  endif()
  add_test(NAME ${name}
           COMMAND bash ${CMAKE_SOURCE_DIR}/tests/print/print_test.sh ${mode} ${CMAKE_BINARY_DIR}
                   ${TAVIREL_GAME_ASSETS} ${CMAKE_BINARY_DIR}/print-pages)
  set_tests_properties(${name} PROPERTIES LABELS e2e TIMEOUT 300 RESOURCE_LOCK tavirel_print_prefix
                       PASS_REGULAR_EXPRESSION "PASS: both print jobs" FAIL_REGULAR_EXPRESSION "FAIL:")
endforeach()
