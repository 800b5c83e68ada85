# The shipped executables, 64- and 32-bit, as Windows sees them before running them: they import only
# system DLLs (the game runs from its folder with nothing else installed), and carry one manifest, the
# version resource and the icon. Plain bash over objdump, no Wine.
find_program(TAVIREL_OBJDUMP64 x86_64-w64-mingw32-objdump)
find_program(TAVIREL_OBJDUMP32 i686-w64-mingw32-objdump)
# The test command builds the 32-bit game there before this tree's tests run.
set(TAVIREL_WIN32_BUILD ${CMAKE_SOURCE_DIR}/build/win32 CACHE PATH "Build folder of the 32-bit game")

function(tavirel_exe_checks name objdump exe filename)
  add_test(NAME ImportTable.${name}
           COMMAND bash ${CMAKE_SOURCE_DIR}/scripts/import-check.sh ${objdump} ${exe})
  add_test(NAME ExeResources.${name}
           COMMAND bash ${CMAKE_SOURCE_DIR}/scripts/resource-check.sh ${objdump} ${exe} ${PROJECT_VERSION}
                   ${filename})
  set_tests_properties(ImportTable.${name} ExeResources.${name} PROPERTIES LABELS release TIMEOUT 60)
endfunction()

tavirel_exe_checks(Tavirel64 ${TAVIREL_OBJDUMP64} $<TARGET_FILE:Tavirel> Tavirel.exe)
tavirel_exe_checks(About64 ${TAVIREL_OBJDUMP64} $<TARGET_FILE:about> about.exe)
tavirel_exe_checks(Tavirel32 ${TAVIREL_OBJDUMP32} ${TAVIREL_WIN32_BUILD}/Tavirel.exe Tavirel.exe)
tavirel_exe_checks(About32 ${TAVIREL_OBJDUMP32} ${TAVIREL_WIN32_BUILD}/about.exe about.exe)
