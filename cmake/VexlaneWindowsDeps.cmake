# The Windows build's dependencies. Debian has no mingw builds of Qt, OpenCV,
# OpenSSL or oneTBB: the backends use the system's own libraries instead
# (WIC, GDI, BCrypt, threads), and the header-only libraries come from the
# Linux packages.

# nlohmann json: Debian's header, seen through a folder that holds nothing
# else, so the Linux system headers stay out of the Windows include path.
set(VEXLANE_WIN_INCLUDE ${CMAKE_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${VEXLANE_WIN_INCLUDE})
if(NOT EXISTS ${VEXLANE_WIN_INCLUDE}/nlohmann)
  file(CREATE_LINK /usr/include/nlohmann ${VEXLANE_WIN_INCLUDE}/nlohmann SYMBOLIC)
endif()
add_library(vexlane_json INTERFACE)
target_include_directories(vexlane_json SYSTEM INTERFACE ${VEXLANE_WIN_INCLUDE})
add_library(Vexlane::Json ALIAS vexlane_json)

# cpp-httplib: the single header of Debian's source package, which
# scripts/setup unpacks into .deps/httplib/.
set(VEXLANE_HTTPLIB_DIR ${CMAKE_SOURCE_DIR}/.deps/httplib CACHE PATH "Folder holding httplib.h")
if(NOT EXISTS ${VEXLANE_HTTPLIB_DIR}/httplib.h)
  message(FATAL_ERROR "${VEXLANE_HTTPLIB_DIR}/httplib.h is missing: run scripts/setup")
endif()
add_library(vexlane_http INTERFACE)
target_include_directories(vexlane_http SYSTEM INTERFACE ${VEXLANE_HTTPLIB_DIR})
target_link_libraries(vexlane_http INTERFACE ws2_32)
add_library(Vexlane::Http ALIAS vexlane_http)

add_library(vexlane_cipher INTERFACE)
target_link_libraries(vexlane_cipher INTERFACE bcrypt)
add_library(Vexlane::Cipher ALIAS vexlane_cipher)

add_library(vexlane_imaging INTERFACE)
target_link_libraries(vexlane_imaging INTERFACE windowscodecs ole32 oleaut32 uuid)
add_library(Vexlane::Imaging ALIAS vexlane_imaging)

add_library(vexlane_text_drawing INTERFACE)
target_link_libraries(vexlane_text_drawing INTERFACE gdi32)
add_library(Vexlane::TextDrawing ALIAS vexlane_text_drawing)

add_library(vexlane_parallel INTERFACE)
target_link_libraries(vexlane_parallel INTERFACE Threads::Threads)
add_library(Vexlane::Parallel ALIAS vexlane_parallel)

# GoogleTest: built from Debian's sources with the cross compiler.
if(VEXLANE_TESTS)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  # (its own CMake file names the GTest:: aliases)
endif()
