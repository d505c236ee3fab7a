# Runs one case in a fresh copy of its folder and compares everything that the run leaves behind:
#
#   cmake -DPROGRAM=kestol -DCOMPARE=compare_text -DCASE=folder -DWORK=folder -P RunCase.cmake
#
# A case holds `arguments` (one per line, perhaps none), the files that the run reads, and
# `expected/` with `stdout`, `status` and each file that the run writes. A file that is missing, or
# that nobody expects, is a failure; so is any text on the error output, or a change to a file that
# the case brought. Symbolic links are made here, from the lines "name target" of `links`: one to a
# device, kept among the sources, would hang every tool that reads all files.
# With -DBLESS=ON the expectations are rewritten instead.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
file(COPY ${CASE}/ DESTINATION ${WORK} PATTERN expected EXCLUDE)
if(EXISTS ${CASE}/links)
  file(STRINGS ${CASE}/links links)
  foreach(link IN LISTS links)
    string(REPLACE " " ";" link "${link}")
    list(GET link 0 name)
    list(GET link 1 target)
    file(CREATE_LINK ${target} ${WORK}/${name} SYMBOLIC)
  endforeach()
endif()
file(GLOB_RECURSE before LIST_DIRECTORIES false RELATIVE ${WORK} ${WORK}/*)
file(STRINGS ${CASE}/arguments arguments)

execute_process(COMMAND ${PROGRAM} ${arguments} WORKING_DIRECTORY ${WORK}
                OUTPUT_FILE stdout ERROR_VARIABLE complaint RESULT_VARIABLE status TIMEOUT 60)
file(WRITE ${WORK}/status "${status}\n")
if(complaint)
  message(SEND_ERROR "text on the error output:\n${complaint}")
endif()
foreach(name IN LISTS before)
  if(EXISTS ${CASE}/${name})
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${CASE}/${name} ${WORK}/${name}
                    RESULT_VARIABLE changed OUTPUT_QUIET ERROR_QUIET)
    if(changed)
      message(SEND_ERROR "the run changes ${name}")
    endif()
  endif()
endforeach()
file(GLOB_RECURSE written LIST_DIRECTORIES false RELATIVE ${WORK} ${WORK}/*)
list(REMOVE_ITEM written ${before})

if(BLESS)
  file(REMOVE_RECURSE ${CASE}/expected)
  foreach(name IN LISTS written)
    get_filename_component(folder ${CASE}/expected/${name} DIRECTORY)
    file(COPY ${WORK}/${name} DESTINATION ${folder})
  endforeach()
  return()
endif()

file(GLOB_RECURSE expected LIST_DIRECTORIES false RELATIVE ${CASE}/expected ${CASE}/expected/*)
foreach(name IN LISTS written)
  if(NOT name IN_LIST expected)
    message(SEND_ERROR "${name} is written, and not expected")
  endif()
endforeach()
foreach(name IN LISTS expected)
  execute_process(COMMAND ${COMPARE} ${CASE}/expected/${name} ${WORK}/${name}
                  RESULT_VARIABLE different OUTPUT_VARIABLE where ERROR_VARIABLE where)
  if(different)
    message(SEND_ERROR "${name} differs from what ${CASE} expects\n${where}")
  endif()
endforeach()
