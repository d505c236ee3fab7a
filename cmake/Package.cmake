# cpack makes Debian packages of what `cmake --install` installs, one of each component.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestol)
set(CPACK_PACKAGE_VENDOR "kestol authors")
# A maintainer must have an address; this one says that there is no mailbox behind it.
set(CPACK_PACKAGE_CONTACT "kestol maintainers <kestol@kestol.invalid>")
# Each package has a line of its own; cpack would put this one before it.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL "")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Files of a package belong to everybody to read and to root to write.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(package_dir ${PROJECT_BINARY_DIR}/package)
find_program(GZIP gzip REQUIRED)
configure_file(${PROJECT_SOURCE_DIR}/cmake/changelog.in ${package_dir}/changelog @ONLY)
execute_process(COMMAND ${GZIP} -9nc ${package_dir}/changelog
                OUTPUT_FILE ${package_dir}/changelog.gz COMMAND_ERROR_IS_FATAL ANY)

# The package NAME of a component: its section, one line and a paragraph on what it is, and what it
# depends on beside the libraries of its programs, recommends and suggests.
function(kestol_package component name section summary text)
  cmake_parse_arguments(PARSE_ARGV 5 with "" "" "DEPENDS;RECOMMENDS;SUGGESTS")
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  string(TOUPPER ${component} key)
  set(CPACK_COMPONENT_${key}_DESCRIPTION "${summary}\n${text}")
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${key}_PACKAGE_SHLIBDEPS ON)
  foreach(relation IN ITEMS DEPENDS RECOMMENDS SUGGESTS)
    list(JOIN with_${relation} ", " packages)
    set(CPACK_DEBIAN_${key}_PACKAGE_${relation} "${packages}")
  endforeach()
  if(component STREQUAL "doc")
    set(CPACK_DEBIAN_${key}_PACKAGE_ARCHITECTURE all)
    set(CPACK_DEBIAN_${key}_PACKAGE_SHLIBDEPS OFF)
  elseif(component STREQUAL "development")
    set(CPACK_DEBIAN_${key}_PACKAGE_SHLIBDEPS OFF)
  endif()
  # Debian wants a change log and a copyright file in each package; a plain installation has no use
  # for them.
  install(FILES ${package_dir}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name}
          COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name}
          RENAME copyright COMPONENT ${component} EXCLUDE_FROM_ALL)
  # Everything that was set here is cpack's.
  get_cmake_property(variables VARIABLES)
  foreach(variable IN LISTS variables)
    if(variable MATCHES "^CPACK_(COMPONENTS_ALL$|COMPONENT_${key}_|DEBIAN_${key}_)")
      set(${variable} "${${variable}}" PARENT_SCOPE)
    endif()
  endforeach()
endfunction()

# Python's bytecode is made when a package is installed and goes with it.
function(kestol_package_bytecode component name folder)
  string(TOUPPER ${component} key)
  foreach(script IN ITEMS postinst prerm)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${script}.in ${package_dir}/${component}/${script} @ONLY)
  endforeach()
  set(CPACK_DEBIAN_${key}_PACKAGE_CONTROL_EXTRA
      "${package_dir}/${component}/postinst;${package_dir}/${component}/prerm" PARENT_SCOPE)
endfunction()

set(fast_blas libopenblas0-serial)
kestol_package(solver kestol science "linear static finite-element analysis of structures"
  "kestol computes displacements, reactions and stresses of frames of beams,
shells of triangles and solids of tetrahedra. It reads one text deck and writes
a report and files for a post-processor."
  SUGGESTS kestol-tools kestol-doc)
if(KESTOL_COMPANIONS)
  set(reader "")
  if(KESTOL_IMPORT)
    set(reader "python3 (>= 3.11)" python3-numpy python3-meshio)
  endif()
  kestol_package(tools kestol-tools science "programs around the solver kestol"
    "Check a deck and explain what is wrong with it, export results for ParaView,
tables and scripts, combine load cases and find envelopes, look at a model in a
browser, and make decks from meshes."
    DEPENDS ${reader}
    RECOMMENDS ${fast_blas} SUGGESTS kestol kestol-doc gmsh python3-ezdxf)
  if(KESTOL_IMPORT)
    kestol_package_bytecode(tools kestol-tools /usr/share/kestol)
  endif()
endif()
if(TARGET kestol-mpi)
  kestol_package(mpi kestol-mpi science "kestol on many processes"
    "Solves one deck of kestol on many processes and machines, by a distributed
factorisation or by conjugate gradients with algebraic multigrid."
    DEPENDS openmpi-bin RECOMMENDS ${fast_blas} SUGGESTS kestol-doc)
endif()
if(KESTOL_PYTHON)
  kestol_package(python python3-kestol python "Python module of the solver kestol"
    "Models from decks or arrays, results as numpy arrays, combinations and
envelopes, many models at once, data frames and pictures."
    DEPENDS "python3 (>= 3.11), python3 (<< 3.12)" python3-numpy
    RECOMMENDS ${fast_blas} SUGGESTS python3-pandas python3-matplotlib kestol-doc)
  kestol_package_bytecode(python python3-kestol /usr/lib/python3/dist-packages/kestol)
endif()
set(sparse_library "")
if(TARGET kestol_direct)
  set(sparse_library libmumps-seq-dev)
endif()
kestol_package(development libkestol-dev libdevel "library of the solver kestol"
  "Headers and static library for programs in C++: read or build a model, solve it
for many loads, ask the results."
  DEPENDS ${sparse_library} SUGGESTS kestol-doc)
kestol_package(doc kestol-doc doc "documents and examples of the solver kestol"
  "The deck, the results, the elements and the programs in pages; examples with
their closed solutions; published problems and what kestol gives."
  SUGGESTS kestol kestol-tools)
include(CPack)
