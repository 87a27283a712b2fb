# Dependencies, all from Debian's packages (scripts/setup installs them).
# Each backend is reached through one alias, the same name on both platforms:
#   Vexlane::Json         nlohmann json (header only, both)
#   Vexlane::Http         cpp-httplib: Debian's compiled library / the single header
#   Vexlane::Cipher       OpenSSL's libcrypto / BCrypt
#   Vexlane::Imaging      OpenCV / WIC
#   Vexlane::TextDrawing  Qt GUI / GDI
#   Vexlane::Parallel     oneTBB / nothing (plain threads)
find_package(Threads REQUIRED)
if(WIN32)
  include(VexlaneWindowsDeps)
  return()
endif()
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets)
find_package(TBB REQUIRED)
find_package(OpenSSL REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(PkgConfig REQUIRED)
# cpp-httplib 0.11 on Debian 12 is a compiled library without a CMake package;
# the imported target keeps the compile definitions it was built with.
pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)

# OpenCV: only the four module packages are installed, which ship no CMake
# package of their own; fall back to the headers and libraries they do ship.
find_package(OpenCV QUIET COMPONENTS core imgproc imgcodecs videoio)
if(OpenCV_FOUND)
  add_library(vexlane_opencv INTERFACE)
  target_include_directories(vexlane_opencv SYSTEM INTERFACE ${OpenCV_INCLUDE_DIRS})
  target_link_libraries(vexlane_opencv INTERFACE ${OpenCV_LIBS})
else()
  find_path(VEXLANE_OPENCV_INCLUDE opencv2/core.hpp PATH_SUFFIXES opencv4 REQUIRED)
  add_library(vexlane_opencv INTERFACE)
  target_include_directories(vexlane_opencv SYSTEM INTERFACE ${VEXLANE_OPENCV_INCLUDE})
  foreach(module core imgproc imgcodecs videoio)
    find_library(VEXLANE_OPENCV_${module} opencv_${module} REQUIRED)
    target_link_libraries(vexlane_opencv INTERFACE ${VEXLANE_OPENCV_${module}})
  endforeach()
endif()
add_library(Vexlane::OpenCV ALIAS vexlane_opencv)

add_library(Vexlane::Json ALIAS nlohmann_json::nlohmann_json)
add_library(Vexlane::Http ALIAS PkgConfig::HTTPLIB)
add_library(Vexlane::Cipher ALIAS OpenSSL::Crypto)
add_library(Vexlane::Imaging ALIAS vexlane_opencv)
add_library(vexlane_text_drawing INTERFACE)
target_link_libraries(vexlane_text_drawing INTERFACE Qt6::Gui)
add_library(Vexlane::TextDrawing ALIAS vexlane_text_drawing)
add_library(vexlane_parallel INTERFACE)
target_link_libraries(vexlane_parallel INTERFACE TBB::tbb)
add_library(Vexlane::Parallel ALIAS vexlane_parallel)
