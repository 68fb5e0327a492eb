include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS TalvekAPI EXPORT TalvekAPITargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES include/talvek.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT TalvekAPITargets NAMESPACE talvek:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/TalvekAPI)

configure_package_config_file(cmake/TalvekAPIConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/TalvekAPIConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/TalvekAPI)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/TalvekAPIConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TalvekAPIConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/TalvekAPIConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/TalvekAPI)

# Told from where the file itself lies, so that the package can be installed anywhere.
file(RELATIVE_PATH talvek_pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/talvek.pc.in talvek.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/talvek.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(TARGET talvek)
  install(TARGETS talvek RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
