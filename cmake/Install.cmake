# Makes the installed library findable: find_package(qz) gives the target qz::qz.
include(CMakePackageConfigHelpers)

install(TARGETS qz EXPORT qzTargets FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qz)
install(TARGETS qz_cli RUNTIME)
install(EXPORT qzTargets NAMESPACE qz:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qz)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/qzConfig.cmake.in qzConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qz)
write_basic_package_version_file(qzConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qzConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/qzConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qz)
