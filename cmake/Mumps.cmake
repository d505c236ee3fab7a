# The sequential MUMPS (Debian: libmumps-seq-dev), for the optional sparse direct solver. Sets
# KESTOL_HAS_MUMPS and makes the target kestol_mumps. The time of a factorisation is that of the BLAS
# behind it: the reference BLAS takes about three times as long as OpenBLAS (libopenblas0-serial).
set(KESTOL_HAS_MUMPS OFF)
if(NOT KESTOL_WITH_MUMPS MATCHES "^(AUTO|ON|OFF)$")
  message(FATAL_ERROR "KESTOL_WITH_MUMPS is AUTO, ON or OFF, not ${KESTOL_WITH_MUMPS}")
endif()
if(NOT KESTOL_WITH_MUMPS STREQUAL "OFF")
  find_path(KESTOL_MUMPS_INCLUDE dmumps_c.h)
  find_library(KESTOL_MUMPS_LIBRARY dmumps_seq)
  mark_as_advanced(KESTOL_MUMPS_INCLUDE KESTOL_MUMPS_LIBRARY)
  if(KESTOL_MUMPS_INCLUDE AND KESTOL_MUMPS_LIBRARY)
    set(KESTOL_HAS_MUMPS ON)
    add_library(kestol_mumps INTERFACE)
    target_include_directories(kestol_mumps SYSTEM INTERFACE ${KESTOL_MUMPS_INCLUDE})
    target_link_libraries(kestol_mumps INTERFACE ${KESTOL_MUMPS_LIBRARY})
  elseif(KESTOL_WITH_MUMPS STREQUAL "ON")
    message(FATAL_ERROR "MUMPS not found: install libmumps-seq-dev, or configure with "
                        "-DKESTOL_WITH_MUMPS=OFF")
  else()
    message(STATUS "MUMPS not found (libmumps-seq-dev): the sparse direct solver is left out")
  endif()
endif()
