# What an installation holds: the program, each library in both forms with its header, a CMake package
# and a pkg-config file, and the models where the program looks for them.
include(CMakePackageConfigHelpers)

# orva_install_library(PACKAGE HEADER DESCRIPTION): the targets PACKAGE_static and PACKAGE_shared, as
# orva::PACKAGE_static and orva::PACKAGE_shared of the CMake package PACKAGE.
function(orva_install_library package header description)
  # A C program that links the static form needs these, and nothing tells its linker so.
  target_link_libraries(${package}_static INTERFACE $<INSTALL_INTERFACE:stdc++> $<INSTALL_INTERFACE:m>)
  install(TARGETS ${package}_static ${package}_shared EXPORT ${package}Targets)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} TYPE INCLUDE)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
  install(EXPORT ${package}Targets NAMESPACE orva:: DESTINATION ${package_dir})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/PackageConfig.cmake.in
    ${PROJECT_BINARY_DIR}/${package}Config.cmake INSTALL_DESTINATION ${package_dir})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/${package}Config.cmake
    ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake DESTINATION ${package_dir})
  # The prefix is known only when the installation is made.
  install(CODE "
    set(package ${package})
    set(description \"${description}\")
    set(PROJECT_VERSION ${PROJECT_VERSION})
    set(CMAKE_INSTALL_LIBDIR ${CMAKE_INSTALL_LIBDIR})
    set(CMAKE_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
    configure_file(\"${PROJECT_SOURCE_DIR}/cmake/package.pc.in\"
      \"${PROJECT_BINARY_DIR}/${package}.pc\" @ONLY)")
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

orva_install_library(pemb lib/api/pemb.h "Names the model that fits a stream of bytes best")
orva_install_library(orva lib/detect/orva.h "Names the charset and the language of bytes")
install(TARGETS orva)
install(FILES models/Model.grp models/Model.stc DESTINATION ${CMAKE_INSTALL_DATADIR}/orva)
