# The program kestol-NAME of the given sources, with its manual page (docs/man/kestol-NAME.1) and
# its completion for bash (completions/kestol-NAME).
function(kestol_companion name)
  set(program kestol-${name})
  add_executable(${program} ${ARGN})
  kestol_target(${program})
  target_link_libraries(${program} PRIVATE kestol_common)
  kestol_install_program(${program} tools)
endfunction()
