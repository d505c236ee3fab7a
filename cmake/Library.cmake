# Installs the public library: headers, archive (or shared library), CMake package, pkg-config file.
include(CMakePackageConfigHelpers)

set(exported libkestol)
if(NOT BUILD_SHARED_LIBS)
  list(APPEND exported kestol_core)
  if(TARGET kestol_direct)
    list(APPEND exported kestol_direct)
  endif()
endif()
install(TARGETS ${exported} EXPORT kestol-targets COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

foreach(folder IN ITEMS algebra model input analysis results output main kestol)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kestol/${folder} COMPONENT development
          FILES_MATCHING PATTERN "*.h")
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/kestol)
install(EXPORT kestol-targets NAMESPACE kestol:: DESTINATION ${package_folder}
        COMPONENT development)
file(WRITE ${PROJECT_BINARY_DIR}/kestol-config.cmake
     "include(\${CMAKE_CURRENT_LIST_DIR}/kestol-targets.cmake)\n")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kestol-config-version.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kestol-config.cmake
              ${PROJECT_BINARY_DIR}/kestol-config-version.cmake
        DESTINATION ${package_folder} COMPONENT development)

set(kestol_pc_libs "-lkestol")
if(NOT BUILD_SHARED_LIBS)
  if(TARGET kestol_direct)
    get_target_property(direct_libs kestol_direct LINK_LIBRARIES)
    list(FILTER direct_libs EXCLUDE REGEX "kestol_core")
    list(TRANSFORM direct_libs REPLACE "^([A-Za-z_]+)$" "-l\\1")
    list(JOIN direct_libs " " direct_libs)
    string(APPEND kestol_pc_libs " -lkestol_direct")
  endif()
  string(APPEND kestol_pc_libs " -lkestol_core ${direct_libs}")
endif()
# The file finds the rest from where it lies: a package has another prefix than the build.
file(RELATIVE_PATH kestol_pc_up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/kestol.pc.in ${PROJECT_BINARY_DIR}/kestol.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kestol.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
