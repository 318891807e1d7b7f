# What `cmake --install` puts in place, and the Debian package made of the same files.
#
# Tools, their man pages and the language page, the run-time reader header and a CMake package
# (find_package(Velor)) that exports the tools and the reader. A further tool joins by adding its
# name to VELOR_TOOLS and its page to docs/; nothing else here needs to change.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(VELOR_VERSION 0.1.0)
set(VELOR_TOOLS velor velor-walk)
set(VELOR_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/Velor")

foreach(tool IN LISTS VELOR_TOOLS)
  if(TARGET ${tool})
    install(TARGETS ${tool} EXPORT VelorTargets RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  endif()
endforeach()
install(TARGETS velor_reader EXPORT VelorTargets INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/velor" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

file(GLOB VELOR_MAN1_PAGES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.1")
file(GLOB VELOR_MAN5_PAGES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.5")
install(FILES ${VELOR_MAN1_PAGES} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES ${VELOR_MAN5_PAGES} DESTINATION "${CMAKE_INSTALL_MANDIR}/man5")

install(EXPORT VelorTargets NAMESPACE Velor:: DESTINATION "${VELOR_PACKAGE_DIR}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/VelorConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/VelorConfig.cmake" INSTALL_DESTINATION "${VELOR_PACKAGE_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VelorConfigVersion.cmake"
  VERSION ${VELOR_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/VelorConfig.cmake"
  "${PROJECT_BINARY_DIR}/VelorConfigVersion.cmake"
  "${PROJECT_SOURCE_DIR}/cmake/VelorResources.cmake"
  DESTINATION "${VELOR_PACKAGE_DIR}")

set(CPACK_PACKAGE_NAME velor)
set(CPACK_PACKAGE_VERSION ${VELOR_VERSION})
set(CPACK_PACKAGE_VENDOR "VELOR developers")
set(CPACK_PACKAGE_CONTACT "VELOR developers <velor@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Resource compiler for .vd descriptions")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6, libstdc++6, libgcc-s1")
include(CPack)
