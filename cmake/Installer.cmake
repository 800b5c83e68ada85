# The Windows setup's end-to-end test: the setup is made from this tree's 64-bit game, the 32-bit build's
# game (build/win32, when the test command has built it) and the native build's game folder, then
# installed, started, installed over and uninstalled in a fresh Wine prefix.
if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8 OR NOT TARGET e2e_probe)
  return()
endif()
find_program(TAVIREL_MAKENSIS makensis)
if(NOT TAVIREL_MAKENSIS)
  message(STATUS "makensis not found (Debian package nsis): E2E.Installer will report it")
endif()
set(TAVIREL_WIN32_BUILD ${CMAKE_SOURCE_DIR}/build/win32 CACHE PATH
    "The 32-bit build whose Tavirel.exe and about.exe the tested setup carries for 32-bit Windows")
add_test(NAME E2E.Installer
         COMMAND bash ${CMAKE_SOURCE_DIR}/tests/e2e/installer_test.sh ${CMAKE_BINARY_DIR} ${TAVIREL_GAME_ASSETS}
                 ${TAVIREL_WIN32_BUILD} ${CMAKE_BINARY_DIR}/e2e-installer)
set_tests_properties(E2E.Installer PROPERTIES LABELS e2e TIMEOUT 300
                     PASS_REGULAR_EXPRESSION "PASS" FAIL_REGULAR_EXPRESSION "FAIL:")
