# What an operator installs: the manager, the suite's programs we ship, the
# interface pictures and the empty data folders the manager writes into.
# On Windows an NSIS installer (target `installer`), on Linux a Debian
# package through CPack (`cpack --config build/CPackConfig.cmake`). Both take
# their version from the project's.
set(VEXLANE_SHIPPED vexlane vxInference vxControl vxMes vxVideoStream vxJournal get_rtsp_onvif)
# The folders the manager and the streams write: settings and white lists,
# logs, crash dumps, recorded video, reports.
set(VEXLANE_DATA_FOLDERS configs logs dumps videos reports)
set(VEXLANE_PACKAGING_DIR ${CMAKE_SOURCE_DIR}/packaging)

if(WIN32)
  find_program(VEXLANE_MAKENSIS makensis)
  if(NOT VEXLANE_MAKENSIS)
    return()
  endif()
  # The shipped executables, stripped of their debugging information
  # (which makes most of their size), and the script's File and Delete lines
  # for them, so the list above is the only one.
  set(stripped ${CMAKE_BINARY_DIR}/installer/bin)
  set(files_in "")
  set(files_out "")
  set(strip_commands "")
  foreach(target ${VEXLANE_SHIPPED})
    string(APPEND files_in "File \"${stripped}/$<TARGET_FILE_NAME:${target}>\"\n")
    string(APPEND files_out "Delete \"$INSTDIR\\$<TARGET_FILE_NAME:${target}>\"\n")
    list(APPEND strip_commands COMMAND ${CMAKE_STRIP} -o ${stripped}/$<TARGET_FILE_NAME:${target}>
      $<TARGET_FILE:${target}>)
  endforeach()
  file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/installer/files.nsh CONTENT
    "!macro VexlaneFiles\n${files_in}!macroend\n!macro VexlaneUnFiles\n${files_out}!macroend\n")
  set(VEXLANE_INSTALLER ${CMAKE_BINARY_DIR}/VexlaneSetup-${PROJECT_VERSION}.exe)
  add_custom_command(OUTPUT ${VEXLANE_INSTALLER}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${stripped}
    ${strip_commands}
    COMMAND ${VEXLANE_MAKENSIS} -V2 -INPUTCHARSET UTF8
      -DVERSION=${PROJECT_VERSION}
      -DBIN_DIR=${VEXLANE_BIN_DIR}
      -DFILES=${CMAKE_BINARY_DIR}/installer/files.nsh
      -DICON=${CMAKE_SOURCE_DIR}/src/ui/win32/vexlane.ico
      -DOUT_FILE=${VEXLANE_INSTALLER}
      ${VEXLANE_PACKAGING_DIR}/windows/vexlane.nsi
    DEPENDS ${VEXLANE_SHIPPED} vexlane_images ${VEXLANE_PACKAGING_DIR}/windows/vexlane.nsi
      ${CMAKE_BINARY_DIR}/installer/files.nsh
    COMMENT "Making the installer VexlaneSetup-${PROJECT_VERSION}.exe"
    VERBATIM)
  add_custom_target(installer DEPENDS ${VEXLANE_INSTALLER})
  return()
endif()

# The Debian package: everything below /opt/vexlane (the manager keeps its
# files beside its executable), the desktop entry and icon in their usual
# places. The data folders go in empty; the maintainer scripts give them to
# the vexlane group.
set(root opt/vexlane)
install(TARGETS ${VEXLANE_SHIPPED} RUNTIME DESTINATION ${root})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/images/ DESTINATION ${root}/images)
foreach(folder ${VEXLANE_DATA_FOLDERS})
  install(DIRECTORY DESTINATION ${root}/${folder})
endforeach()
install(FILES ${VEXLANE_PACKAGING_DIR}/debian/vexlane.desktop DESTINATION usr/share/applications)
install(FILES ${CMAKE_SOURCE_DIR}/images/vexlane.png DESTINATION usr/share/icons/hicolor/64x64/apps)
install(FILES ${VEXLANE_PACKAGING_DIR}/debian/copyright DESTINATION usr/share/doc/vexlane)
install(FILES ${VEXLANE_PACKAGING_DIR}/debian/lintian-overrides
  DESTINATION usr/share/lintian/overrides RENAME vexlane)
# Debian wants the changelog compressed, without a time stamp in the
# header; the package is native (no Debian revision), so changelog.gz.
string(TIMESTAMP VEXLANE_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${VEXLANE_PACKAGING_DIR}/debian/changelog.in ${CMAKE_BINARY_DIR}/packaging/changelog.Debian @ONLY)
execute_process(COMMAND gzip -9nc ${CMAKE_BINARY_DIR}/packaging/changelog.Debian
  OUTPUT_FILE ${CMAKE_BINARY_DIR}/packaging/changelog.gz)
install(FILES ${CMAKE_BINARY_DIR}/packaging/changelog.gz DESTINATION usr/share/doc/vexlane)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vexlane)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR Vexlane)
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "manager of a licence-plate recognition suite")
# The extended description; the synopsis above is its first line.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "The desktop manager of a licence-plate recognition suite for gates and
barriers: it describes camera streams, starts and watches the processes
that analyse them, shows one live tile per stream and keeps white lists
of plates. The suite's service programs, stream process, journal viewer
and camera discovery tool come with it. The interface is in Russian.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Vexlane developers <developers@vexlane.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries come from dpkg-shlibdeps; the group is made with groupadd.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "passwd")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "acl")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${VEXLANE_PACKAGING_DIR}/debian/postinst ${VEXLANE_PACKAGING_DIR}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
