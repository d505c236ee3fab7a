# The program kestol-NAME of the given sources, with its manual page (docs/man/kestol-NAME.1) and
# its completion for bash (completions/kestol-NAME).
function(kestol_companion name)
  set(program kestol-${name})
  add_executable(${program} ${ARGN})
  kestol_target(${program})
  target_link_libraries(${program} PRIVATE kestol_common)
  kestol_install_companion(${program})
endfunction()

# Installs the program with its page and its completion.
function(kestol_install_companion program)
  install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

  set(page ${PROJECT_BINARY_DIR}/package/${program}.1.gz)
  add_custom_command(OUTPUT ${page}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/package
    COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/docs/man/${program}.1 > ${page}
    DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/${program}.1
    VERBATIM)
  add_custom_target(${program}-page ALL DEPENDS ${page})
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${PROJECT_SOURCE_DIR}/completions/${program}
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions)
endfunction()
