# The package: headers as <quorl/...>, two libraries that find each other beside themselves, a CMake
# package that gives Quorl::quorl and zelm_add_module, and a file for pkg-config.

include(CMakePackageConfigHelpers)

install(TARGETS tolmen quorl
    EXPORT QuorlTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(QUORL_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quorl)
install(EXPORT QuorlTargets NAMESPACE Quorl:: DESTINATION ${QUORL_PACKAGE_DIR})
configure_package_config_file(cmake/QuorlConfig.cmake.in QuorlConfig.cmake
    INSTALL_DESTINATION ${QUORL_PACKAGE_DIR})
write_basic_package_version_file(QuorlConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/QuorlConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/QuorlConfigVersion.cmake
    cmake/ZelmModule.cmake
    DESTINATION ${QUORL_PACKAGE_DIR})

# Told from where the file stands, so that the installation can be moved.
file(RELATIVE_PATH QUORL_PREFIX_FROM_PKGCONFIG
    /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/quorl.pc.in quorl.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quorl.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
