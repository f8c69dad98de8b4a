# SPDX-License-Identifier: MIT
# What `cmake --install` lays down: headers, library, CMake package, pkg-config file, host, documents; and how the
# same files become a Debian package. Everything can be moved: no file names the prefix it was installed to.
include(CMakePackageConfigHelpers)

# Headers keep their folders below include/.
get_property(headers GLOBAL PROPERTY ZELTOOLS_PUBLIC_HEADERS)
foreach(header IN LISTS headers)
    cmake_path(RELATIVE_PATH header BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE inside)
    cmake_path(GET inside PARENT_PATH folder)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()

install(TARGETS zeltools EXPORT ZelToolsTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

# find_package(ZelTools) gives ZelTools::zeltools.
set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/ZelTools)
install(EXPORT ZelToolsTargets NAMESPACE ZelTools:: DESTINATION ${packageFolder})
configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/ZelToolsConfig.cmake.in ${PROJECT_BINARY_DIR}/ZelToolsConfig.cmake
    INSTALL_DESTINATION ${packageFolder} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZelToolsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZelToolsConfig.cmake ${PROJECT_BINARY_DIR}/ZelToolsConfigVersion.cmake
        DESTINATION ${packageFolder})

# pkg-config finds the prefix from the place of the file itself.
set(pkgConfigFolder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pkgConfigFolder}
           OUTPUT_VARIABLE prefixFromPkgConfig)
configure_file(${CMAKE_CURRENT_LIST_DIR}/zeltools.pc.in ${PROJECT_BINARY_DIR}/zeltools.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zeltools.pc DESTINATION ${pkgConfigFolder})

if(TARGET zel)
    # The installed host finds the library beside it, wherever both were put.
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
               OUTPUT_VARIABLE libraryFromHost)
    set_target_properties(zel PROPERTIES INSTALL_RPATH "$ORIGIN/${libraryFromHost}")
    install(TARGETS zel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES ${PROJECT_SOURCE_DIR}/docs/man/zel.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/zeltools OPTIONAL)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/zeltools RENAME copyright)

set(CPACK_PACKAGE_NAME zeltools)
set(CPACK_PACKAGE_VENDOR "The ZelTools maintainers")
set(CPACK_PACKAGE_CONTACT "The ZelTools maintainers <maintainers@zeltools.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libglib2.0-0, shared-mime-info") # opened when first asked, so no dependency
include(CPack)
