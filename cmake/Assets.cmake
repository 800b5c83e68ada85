# Artwork, sounds, clips, help pages, photographs and the module resources of the game.
#
# The build-time tools (tools/) are always compiled natively and optimised as a project of their own,
# so that the MinGW builds can run them too: the Windows builds make the sounds, cursors and icon
# that tavirel.rc takes in, and the clips and music for the Wine media tests; the native build makes
# everything else and lays out the game folder.
include(ExternalProject)

set(TAVIREL_HOST_TOOLS ${CMAKE_BINARY_DIR}/host-tools)
if(WIN32)
  set(TAVIREL_TOOLS_MEDIA_ONLY ON)
  set(TAVIREL_TOOL_PROGRAMS mediagen)
else()
  set(TAVIREL_TOOLS_MEDIA_ONLY OFF)
  set(TAVIREL_TOOL_PROGRAMS mediagen artgen patcheck photoprep)
endif()
set(TAVIREL_TOOL_BINARIES)
foreach(tool ${TAVIREL_TOOL_PROGRAMS})
  list(APPEND TAVIREL_TOOL_BINARIES ${TAVIREL_HOST_TOOLS}/${tool})
endforeach()

ExternalProject_Add(tavirel_tools
  SOURCE_DIR ${CMAKE_SOURCE_DIR}/tools
  BINARY_DIR ${TAVIREL_HOST_TOOLS}
  CMAKE_ARGS -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=cc -DCMAKE_CXX_COMPILER=c++
             -DTAVIREL_TOOLS_MEDIA_ONLY=${TAVIREL_TOOLS_MEDIA_ONLY}
  BUILD_ALWAYS ON
  INSTALL_COMMAND ""
  BUILD_BYPRODUCTS ${TAVIREL_TOOL_BINARIES}
  USES_TERMINAL_BUILD OFF)

set(TAVIREL_MEDIAGEN ${TAVIREL_HOST_TOOLS}/mediagen)

if(WIN32)
  # Inputs of tavirel.rc made at build time; windres finds them through the include path.
  set(TAVIREL_RES_DIR ${CMAKE_BINARY_DIR}/res)
  set(TAVIREL_RES_FILES ${TAVIREL_RES_DIR}/hover.wav ${TAVIREL_RES_DIR}/click.wav ${TAVIREL_RES_DIR}/tray.cur
                        ${TAVIREL_RES_DIR}/drag.cur ${TAVIREL_RES_DIR}/normal.cur ${TAVIREL_RES_DIR}/tavirel.ico)
  add_custom_command(OUTPUT ${TAVIREL_RES_FILES}
    COMMAND ${TAVIREL_MEDIAGEN} resources ${TAVIREL_RES_DIR}
    DEPENDS ${TAVIREL_MEDIAGEN}
    COMMENT "Making the sounds, cursors and icon")
  add_custom_target(tavirel_res_files DEPENDS ${TAVIREL_RES_FILES})
  file(GLOB TAVIREL_RC_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/res/*.rc)
  # The version resource numbers itself from app/version.h, made into the generated folder.
  set_source_files_properties(${CMAKE_SOURCE_DIR}/res/tavirel.rc ${CMAKE_SOURCE_DIR}/res/about.rc PROPERTIES
    OBJECT_DEPENDS "${TAVIREL_RES_FILES};${TAVIREL_RC_SOURCES};${CMAKE_SOURCE_DIR}/res/tavirel.manifest;${CMAKE_BINARY_DIR}/generated/app/version.h"
    INCLUDE_DIRECTORIES "${TAVIREL_RES_DIR};${CMAKE_SOURCE_DIR}/res;${CMAKE_BINARY_DIR}/generated")
  target_sources(Tavirel PRIVATE ${CMAKE_SOURCE_DIR}/res/tavirel.rc)
  add_dependencies(Tavirel tavirel_res_files)
  # about.exe: the game's icon, its own version resource and the same manifest.
  target_sources(about PRIVATE ${CMAKE_SOURCE_DIR}/res/about.rc)
  add_dependencies(about tavirel_res_files)

  if(TARGET win32_tests)
    # The media test plays the executable's own WAVE resources and opens the game's clips.
    set(TAVIREL_CLIP_DIR ${CMAKE_BINARY_DIR}/media/Video)
    set(TAVIREL_CLIPS ${TAVIREL_CLIP_DIR}/0.avi ${TAVIREL_CLIP_DIR}/1.avi ${TAVIREL_CLIP_DIR}/2.avi)
    add_custom_command(OUTPUT ${TAVIREL_CLIPS}
      COMMAND ${TAVIREL_MEDIAGEN} clips ${TAVIREL_CLIP_DIR}
      DEPENDS ${TAVIREL_MEDIAGEN}
      COMMENT "Making the video clips")
    add_custom_target(tavirel_test_clips DEPENDS ${TAVIREL_CLIPS})
    # The music test plays the game's four pieces through MCI's waveaudio device.
    set(TAVIREL_MUSIC_DIR ${CMAKE_BINARY_DIR}/media/Music)
    set(TAVIREL_MUSIC ${TAVIREL_MUSIC_DIR}/Track1.wav ${TAVIREL_MUSIC_DIR}/Track2.wav ${TAVIREL_MUSIC_DIR}/Track3.wav
                      ${TAVIREL_MUSIC_DIR}/Track4.wav)
    add_custom_command(OUTPUT ${TAVIREL_MUSIC}
      COMMAND ${TAVIREL_MEDIAGEN} music ${TAVIREL_MUSIC_DIR}
      DEPENDS ${TAVIREL_MEDIAGEN}
      COMMENT "Composing the music")
    add_custom_target(tavirel_test_music DEPENDS ${TAVIREL_MUSIC})
    target_sources(win32_tests PRIVATE ${CMAKE_SOURCE_DIR}/res/tavirel.rc)
    add_dependencies(win32_tests tavirel_res_files tavirel_test_clips tavirel_test_music)
    # Wine sees the build folder through drive Z:.
    string(REPLACE "/" "\\\\" TAVIREL_CLIP_DIR_WINDOWS "Z:${TAVIREL_CLIP_DIR}")
    string(REPLACE "/" "\\\\" TAVIREL_MUSIC_DIR_WINDOWS "Z:${TAVIREL_MUSIC_DIR}")
    target_compile_definitions(win32_tests PRIVATE "TAVIREL_CLIP_DIR=\"${TAVIREL_CLIP_DIR_WINDOWS}\""
                               "TAVIREL_MUSIC_DIR=\"${TAVIREL_MUSIC_DIR_WINDOWS}\"")
    target_link_libraries(win32_tests PRIVATE winmm)
  endif()
  return()
endif()

# Native: the pack, the game folder and the contact sheet.
set(TAVIREL_ART_DIR ${CMAKE_BINARY_DIR}/art)
set(TAVIREL_DIST_DIR ${CMAKE_BINARY_DIR}/dist/Tavirel CACHE PATH "Where the ready-to-run game folder is laid out")
set(TAVIREL_PHOTO_SOURCE /usr/share/backgrounds/mate/nature CACHE PATH "Folder of the default photographs")

file(GLOB TAVIREL_ARTGEN_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tools/artgen/*)
file(GLOB_RECURSE TAVIREL_HELP_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/assets/help/*)

add_custom_command(OUTPUT ${TAVIREL_ART_DIR}/pack.list ${TAVIREL_ART_DIR}/contact.png
  COMMAND ${TAVIREL_HOST_TOOLS}/artgen --words ${CMAKE_SOURCE_DIR}/assets/art_words.tsv --out ${TAVIREL_ART_DIR}
  DEPENDS ${TAVIREL_HOST_TOOLS}/artgen ${CMAKE_SOURCE_DIR}/assets/art_words.tsv ${TAVIREL_ARTGEN_SOURCES}
          ${CMAKE_SOURCE_DIR}/src/app/art_ids.h
  COMMENT "Drawing the pack items")

add_custom_command(OUTPUT ${TAVIREL_DIST_DIR}/Tavirel.rf
  COMMAND ${CMAKE_COMMAND} -E make_directory ${TAVIREL_DIST_DIR}
  COMMAND ${TAVIREL_HOST_TOOLS}/patcheck ${TAVIREL_ART_DIR}/items/5000.bmp ${TAVIREL_ART_DIR}/items/5001.bmp
          ${TAVIREL_ART_DIR}/items/5002.bmp
  COMMAND $<TARGET_FILE:rfpack> build ${TAVIREL_DIST_DIR}/Tavirel.rf ${TAVIREL_ART_DIR}/pack.list
  DEPENDS rfpack ${TAVIREL_ART_DIR}/pack.list ${TAVIREL_HOST_TOOLS}/patcheck
  COMMENT "Checking the cut patterns and building Tavirel.rf")

add_custom_command(OUTPUT ${TAVIREL_DIST_DIR}/Video/2.avi ${TAVIREL_DIST_DIR}/Video/1.avi ${TAVIREL_DIST_DIR}/Video/0.avi
  COMMAND ${CMAKE_COMMAND} -E make_directory ${TAVIREL_DIST_DIR}
  COMMAND ${TAVIREL_MEDIAGEN} clips ${TAVIREL_DIST_DIR}/Video
  DEPENDS ${TAVIREL_MEDIAGEN}
  COMMENT "Making the video clips")

add_custom_command(OUTPUT ${TAVIREL_DIST_DIR}/Music/Track1.wav ${TAVIREL_DIST_DIR}/Music/Track2.wav
                          ${TAVIREL_DIST_DIR}/Music/Track3.wav ${TAVIREL_DIST_DIR}/Music/Track4.wav
  COMMAND ${CMAKE_COMMAND} -E make_directory ${TAVIREL_DIST_DIR}
  COMMAND ${TAVIREL_MEDIAGEN} music ${TAVIREL_DIST_DIR}/Music
  DEPENDS ${TAVIREL_MEDIAGEN}
  COMMENT "Composing the music")

# The photographs' stamp is the credits file; an absent photograph package gives drawn pictures.
add_custom_command(OUTPUT ${TAVIREL_DIST_DIR}/Credits-pictures.txt
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${TAVIREL_DIST_DIR}/Image
  COMMAND ${CMAKE_COMMAND} -E make_directory ${TAVIREL_DIST_DIR}/Image
  COMMAND ${TAVIREL_HOST_TOOLS}/photoprep --list ${CMAKE_SOURCE_DIR}/assets/pictures.tsv
          --source ${TAVIREL_PHOTO_SOURCE} --out ${TAVIREL_DIST_DIR}/Image
          --credits ${TAVIREL_DIST_DIR}/Credits-pictures.txt
  DEPENDS ${TAVIREL_HOST_TOOLS}/photoprep ${CMAKE_SOURCE_DIR}/assets/pictures.tsv
  COMMENT "Preparing the default photographs")

add_custom_command(OUTPUT ${TAVIREL_DIST_DIR}/Help/1/Index.htm ${TAVIREL_DIST_DIR}/Credits.txt
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_SOURCE_DIR}/assets/help ${TAVIREL_DIST_DIR}/Help
  COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/assets/Credits.txt ${TAVIREL_DIST_DIR}/Credits.txt
  COMMAND ${CMAKE_COMMAND} -E copy /usr/share/common-licenses/GPL-2 ${TAVIREL_DIST_DIR}/COPYING-GPL-2.txt
  COMMAND ${CMAKE_COMMAND} -E make_directory ${TAVIREL_DIST_DIR}/folder
  DEPENDS ${TAVIREL_HELP_SOURCES} ${CMAKE_SOURCE_DIR}/assets/Credits.txt
  COMMENT "Copying the help pages and credits")

add_custom_target(tavirel_assets ALL DEPENDS
  ${TAVIREL_DIST_DIR}/Tavirel.rf ${TAVIREL_DIST_DIR}/Video/2.avi ${TAVIREL_DIST_DIR}/Music/Track1.wav
  ${TAVIREL_DIST_DIR}/Credits-pictures.txt
  ${TAVIREL_DIST_DIR}/Help/1/Index.htm ${TAVIREL_ART_DIR}/contact.png)

if(TAVIREL_TESTS)
  # The pack-content, cut-pattern and music tests read what tavirel_assets made.
  file(GLOB TAVIREL_ASSET_TESTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/assets/*.cpp)
  add_executable(assets_tests ${TAVIREL_ASSET_TESTS} ${CMAKE_SOURCE_DIR}/tools/artgen/art_table.cpp
                 ${CMAKE_SOURCE_DIR}/tools/patcheck/pattern_rules.cpp
                 ${CMAKE_SOURCE_DIR}/tests/unit/puzzle_test_support.cpp)
  target_include_directories(assets_tests PRIVATE ${CMAKE_SOURCE_DIR}/tools ${CMAKE_SOURCE_DIR}/tests/unit)
  target_link_libraries(assets_tests PRIVATE tavirel_core ${TAVIREL_GTEST})
  add_dependencies(assets_tests tavirel_assets)
  target_compile_definitions(assets_tests PRIVATE
    TAVIREL_DIST_DIR="${TAVIREL_DIST_DIR}"
    TAVIREL_ART_DIR="${TAVIREL_ART_DIR}"
    TAVIREL_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    TAVIREL_PATCHECK="${TAVIREL_HOST_TOOLS}/patcheck"
    TAVIREL_MEDIAGEN="${TAVIREL_MEDIAGEN}")
  gtest_discover_tests(assets_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       PROPERTIES LABELS assets TIMEOUT 120)
endif()
