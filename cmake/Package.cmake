# cpack makes a Debian package of what `cmake --install` installs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestol)
set(CPACK_PACKAGE_VENDOR "kestol authors")
# A maintainer must have an address; this one says that there is no mailbox behind it.
set(CPACK_PACKAGE_CONTACT "kestol maintainers <kestol@kestol.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "linear static finite-element analysis of structures")
set(CPACK_PACKAGE_DESCRIPTION
    "kestol computes displacements, reactions and stresses of frames of beams,
shells of triangles and solids of tetrahedra. It reads one text deck and writes
a report and files for a post-processor.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Files of a package belong to everybody to read and to root to write.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# Debian wants the change log and the man page compressed, and a copyright file.
find_program(GZIP gzip REQUIRED)
set(package_dir ${PROJECT_BINARY_DIR}/package)
configure_file(${PROJECT_SOURCE_DIR}/cmake/changelog.in ${package_dir}/changelog @ONLY)
execute_process(COMMAND ${GZIP} -9nc ${package_dir}/changelog
                OUTPUT_FILE ${package_dir}/changelog.gz COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/docs/man/kestol.1
                OUTPUT_FILE ${package_dir}/kestol.1.gz COMMAND_ERROR_IS_FATAL ANY)
install(FILES ${package_dir}/kestol.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${package_dir}/changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
include(CPack)
