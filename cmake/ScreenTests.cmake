# The playing screen at three screen sizes under Wine, with its screenshots kept in e2e-screens/.
add_test(NAME E2E.ScreensAtThreeSizes
         COMMAND bash ${CMAKE_SOURCE_DIR}/tests/e2e/screens_test.sh ${CMAKE_BINARY_DIR} ${TAVIREL_GAME_ASSETS}
                 ${CMAKE_BINARY_DIR}/e2e-screens)
set_tests_properties(E2E.ScreensAtThreeSizes PROPERTIES LABELS e2e TIMEOUT 300
                     PASS_REGULAR_EXPRESSION "PASS" FAIL_REGULAR_EXPRESSION "FAIL:")
