# The commit that the sources are of, as cmake/Commit.h: included, this makes the target kal_commit;
# run as a script with KAL_ROOT and KAL_GENERATED, it writes the file, where the commit is another one.
if(NOT CMAKE_SCRIPT_MODE_FILE)
  set(write_commit ${CMAKE_COMMAND} -DKAL_ROOT=${KAL_ROOT} -DKAL_GENERATED=${KAL_GENERATED}
    -P ${CMAKE_CURRENT_LIST_FILE})
  execute_process(COMMAND ${write_commit})  # for what reads the sources without building
  add_custom_target(kal_commit
    COMMAND ${write_commit}
    BYPRODUCTS ${KAL_GENERATED}/cmake/Commit.h
    COMMENT "Reading the commit"
    VERBATIM)
  return()
endif()

# Sources that were unpacked inside a working copy of something else are none of its commits.
set(KAL_COMMIT "")
execute_process(COMMAND git -C ${KAL_ROOT} rev-parse --show-toplevel
  OUTPUT_VARIABLE top OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE status)
file(REAL_PATH ${KAL_ROOT} root)
if(status EQUAL 0 AND top STREQUAL root)
  execute_process(COMMAND git -C ${KAL_ROOT} describe --always --exclude * --abbrev=7 --dirty=+
    OUTPUT_VARIABLE KAL_COMMIT OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/Commit.h.in ${KAL_GENERATED}/cmake/Commit.h @ONLY)
