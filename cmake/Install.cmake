include(CMakePackageConfigHelpers)

install(TARGETS kalvio EXPORT kalvioTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder IN LISTS KALVIO_LIBRARY_FOLDERS)
  install(DIRECTORY src/${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kalvio
    FILES_MATCHING PATTERN "*.h" PATTERN "posix" EXCLUDE)
endforeach()
install(EXPORT kalvioTargets NAMESPACE kalvio::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kalvio)
configure_package_config_file(cmake/kalvioConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/kalvioConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kalvio)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/kalvioConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kalvioConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/kalvioConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kalvio)
