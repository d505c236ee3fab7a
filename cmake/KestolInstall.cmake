# What every program installs beside itself. The components are those of the packages: solver, tools,
# mpi, python, development and doc.

# The manual page docs/man/PAGE, compressed as Debian wants it.
function(kestol_install_page page component)
  string(REGEX MATCH "[0-9]$" section ${page})
  set(compressed ${PROJECT_BINARY_DIR}/package/${page}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/package
    COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/docs/man/${page} > ${compressed}
    DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/${page}
    VERBATIM)
  add_custom_target(${page}-page ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section}
          COMPONENT ${component})
endfunction()

# The manual page of a program and its completion for bash.
function(kestol_install_help program component)
  kestol_install_page(${program}.1 ${component})
  install(FILES ${PROJECT_SOURCE_DIR}/completions/${program}
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
          COMPONENT ${component})
endfunction()

# A compiled program with both.
function(kestol_install_program program component)
  install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
  kestol_install_help(${program} ${component})
endfunction()
