# Install rules: libraries, headers, program, reference database, CMake package, pkg-config file.
include(CMakePackageConfigHelpers)

set(lanecfg_libraries hostx_common hostx_coregen strmio_iostreams hostx_rule_engine)
# Installed files find each other wherever the prefix is moved to.
set_target_properties(${lanecfg_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
file(RELATIVE_PATH lanecfg_bin_to_lib
    ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(lanecfg PROPERTIES INSTALL_RPATH "$ORIGIN/${lanecfg_bin_to_lib}")
install(TARGETS lanecfg RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(TARGETS ${lanecfg_libraries} EXPORT lanecfgTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

foreach(layer host/hostx_common host/hostx_coregen host/strmio_iostreams
              ip/rule_engine/rule_engine_base ip/rule_engine/gt_rule_engine)
    install(DIRECTORY ${layer}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endforeach()
install(DIRECTORY data DESTINATION ${CMAKE_INSTALL_DATADIR}/lanecfg
    PATTERN "*.sh" PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(lanecfg_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/lanecfg)
install(EXPORT lanecfgTargets NAMESPACE lanecfg:: DESTINATION ${lanecfg_package_dir})
configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/lanecfgConfig.cmake.in ${PROJECT_BINARY_DIR}/lanecfgConfig.cmake
    INSTALL_DESTINATION ${lanecfg_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/lanecfgConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/lanecfgConfig.cmake
              ${PROJECT_BINARY_DIR}/lanecfgConfigVersion.cmake
    DESTINATION ${lanecfg_package_dir})

# The file finds its prefix from its own place, wherever the tree is installed.
file(RELATIVE_PATH lanecfg_pc_to_prefix
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${CMAKE_CURRENT_LIST_DIR}/lanecfg.pc.in ${PROJECT_BINARY_DIR}/lanecfg.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lanecfg.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
