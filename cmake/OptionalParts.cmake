# Parts that stand on packages which may be missing: each has an option KESTOL_WITH_<PART> of AUTO
# (built where its packages are found), ON (required) or OFF.
#
# What is left out is said in one line, and noted in build/<preset>/left-out for script/test.
file(WRITE ${PROJECT_BINARY_DIR}/left-out "")

option(KESTOL_BUILD_COMPANIONS "Build the companions that their packages allow" ON)

function(kestol_optional_part name text)
  set(KESTOL_WITH_${name} AUTO CACHE STRING "${text}: AUTO, ON or OFF")
  set_property(CACHE KESTOL_WITH_${name} PROPERTY STRINGS AUTO ON OFF)
  if(NOT KESTOL_BUILD_COMPANIONS)
    set(KESTOL_WITH_${name} OFF PARENT_SCOPE)
  endif()
endfunction()

# Says why a part is not built; a part that was asked for stops the configuration.
function(kestol_leave_out name why)
  if(KESTOL_WITH_${name} STREQUAL "ON")
    message(FATAL_ERROR "KESTOL_WITH_${name} is ON, but ${why}")
  endif()
  message(STATUS "${name} is left out: ${why}")
  file(APPEND ${PROJECT_BINARY_DIR}/left-out "  ${name}: ${why}\n")
endfunction()
