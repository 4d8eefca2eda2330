# The package: headers as <quorl/...>, two libraries that find each other beside themselves, and a
# CMake package that gives Quorl::quorl.

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
    DESTINATION ${QUORL_PACKAGE_DIR})
