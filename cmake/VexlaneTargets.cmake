# One static library per subsystem folder. Sources are picked up from the
# folder itself, so adding a file needs no edit here. A folder's posix/ or
# win32/ subfolder holds its backends for one platform: CMake picks the one
# of the platform it builds for, so no source tests the platform itself.
if(WIN32)
  set(VEXLANE_PLATFORM win32)
else()
  set(VEXLANE_PLATFORM posix)
endif()
function(vexlane_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
endfunction()

# vexlane_library(<target> <folder> [EXTRA_DIRS dir...] [DEPS target...])
function(vexlane_library target folder)
  cmake_parse_arguments(ARG "" "" "EXTRA_DIRS;DEPS" ${ARGN})
  set(globs ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${VEXLANE_PLATFORM}/*.cpp)
  foreach(dir ${ARG_EXTRA_DIRS})
    list(APPEND globs ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.cpp)
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${globs})
  if(NOT sources)
    set(sources ${CMAKE_SOURCE_DIR}/cmake/empty.cpp)
  endif()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${target} PUBLIC ${ARG_DEPS})
  # oneTBB's headers use "emit" as an identifier; Qt code writes Q_EMIT.
  target_compile_definitions(${target} PUBLIC QT_NO_EMIT)
  vexlane_warnings(${target})
endfunction()
