# Libraries install with their headers and a package file, so that a host application can write
# find_package(Zandrel) and link Zandrel::base.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

get_property(libraries GLOBAL PROPERTY ZANDREL_LIBRARIES)
install(TARGETS ${libraries} EXPORT ZandrelTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder platform stack base pki widgets certificates console resources valuewidgets)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zandrel FILES_MATCHING PATTERN "*.h")
endforeach()
install(DIRECTORY ${PROJECT_BINARY_DIR}/generated/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zandrel FILES_MATCHING PATTERN "*.h")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Zandrel)
install(EXPORT ZandrelTargets NAMESPACE Zandrel:: DESTINATION ${package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZandrelConfig.cmake.in
    ${PROJECT_BINARY_DIR}/ZandrelConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZandrelConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZandrelConfig.cmake
    ${PROJECT_BINARY_DIR}/ZandrelConfigVersion.cmake DESTINATION ${package_dir})
