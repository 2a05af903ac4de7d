# Installs headers, libraries and the CMake package XPToolkit, so that outside
# code writes find_package(XPToolkit CONFIG REQUIRED) and #include <XPToolkit.h>.
include(CMakePackageConfigHelpers)

set(XP_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/XPToolkit)

install(FILES toolkit/XPToolkit.h DESTINATION ${XP_INSTALL_INCLUDEDIR})
install(DIRECTORY toolkit/ DESTINATION ${XP_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h" PATTERN "XPToolkit.h" EXCLUDE)
install(FILES memhost/MemHost.h DESTINATION ${XP_INSTALL_INCLUDEDIR})

set(XP_EXPORTED toolkit memhost)
if(NOT APPLE)
  install(DIRECTORY platform/include/ DESTINATION ${XP_INSTALL_INCLUDEDIR}/platform)
  list(APPEND XP_EXPORTED platform)
endif()

install(TARGETS ${XP_EXPORTED} EXPORT XPToolkitTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT XPToolkitTargets NAMESPACE XPToolkit:: DESTINATION ${XP_CMAKE_DIR})

configure_package_config_file(cmake/XPToolkitConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/XPToolkitConfig.cmake INSTALL_DESTINATION ${XP_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/XPToolkitConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/XPToolkitConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/XPToolkitConfigVersion.cmake DESTINATION ${XP_CMAKE_DIR})
