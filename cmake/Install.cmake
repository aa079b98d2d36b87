include(CMakePackageConfigHelpers)

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/kalvio)
install(TARGETS kalvio kalvio_simulator_archive kalvio_testing_archive kalvio_reference_host_archive
  EXPORT kalvioTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kalvio)
if(TARGET kalvio-bench)
  install(TARGETS kalvio-bench EXPORT kalvioTargets RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(EXPORT kalvioTargets NAMESPACE kalvio:: DESTINATION ${package_directory})
configure_package_config_file(cmake/kalvioConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/kalvioConfig.cmake
  INSTALL_DESTINATION ${package_directory})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/kalvioConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kalvioConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/kalvioConfigVersion.cmake
  DESTINATION ${package_directory})
