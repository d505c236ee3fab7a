# The program kestol-NAME of the given sources, with its manual page (docs/man/kestol-NAME.1) and
# its completion for bash (completions/kestol-NAME).
#
# Each has the file of what a program does when it is ended; libraries have not.
set(KESTOL_LAST_RESORT ${PROJECT_SOURCE_DIR}/programs/common/LastResort.cc)
function(kestol_companion name)
  set(program kestol-${name})
  add_executable(${program} ${ARGN} ${KESTOL_LAST_RESORT})
  kestol_target(${program})
  target_link_libraries(${program} PRIVATE kestol_common)
  kestol_install_program(${program} tools)
endfunction()
