# What `cmake --install` puts down: one library, its run-time data, the public headers, and the two ways to find
# them, find_package(tsRtm) and pkg-config tsRtm.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tsRtm)
# Where the library looks for it: see tsRtm/platform/posix/PosixInstallation.hpp.
set(TSRTM_RUNTIME_DIR ${CMAKE_INSTALL_LIBDIR}/Tessarol)

install(TARGETS tsRtm EXPORT tsRtmTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/data/KeyTS.dat DESTINATION ${TSRTM_RUNTIME_DIR})
install(EXPORT tsRtmTargets NAMESPACE tsRtm:: DESTINATION ${package_dir})

if(TARGET tsRtm_desktop)
  install(TARGETS tsRtm_desktop EXPORT tsRtmDesktopTargets COMPONENT desktop
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(EXPORT tsRtmDesktopTargets NAMESPACE tsRtm:: DESTINATION ${package_dir} COMPONENT desktop)
endif()

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/tsRtmConfig.cmake.in
  ${PROJECT_BINARY_DIR}/tsRtmConfig.cmake INSTALL_DESTINATION ${package_dir} PATH_VARS TSRTM_RUNTIME_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tsRtmConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tsRtmConfig.cmake ${PROJECT_BINARY_DIR}/tsRtmConfigVersion.cmake
  DESTINATION ${package_dir})

# A static library hands its own needs on to whoever links it; a shared one has them inside.
get_target_property(library_type tsRtm TYPE)
if(library_type STREQUAL "STATIC_LIBRARY")
  set(PC_REQUIRES "Requires")
else()
  set(PC_REQUIRES "Requires.private")
endif()
# The prefix is told from where the .pc file lies, so that an installed tree may be moved.
file(RELATIVE_PATH PC_UP /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" PC_UP "${PC_UP}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/tsRtm.pc.in ${PROJECT_BINARY_DIR}/tsRtm.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tsRtm.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
