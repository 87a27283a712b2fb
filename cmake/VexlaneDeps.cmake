# Dependencies, all from Debian's packages (scripts/setup installs them).
find_package(Threads REQUIRED)
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
