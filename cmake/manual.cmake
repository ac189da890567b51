# The pages of the manual and the shells' completions, made of the program's own command line.
include(GNUInstallDirs)

add_executable(kal_manual
  host/manual/main.cpp host/manual/Completion.cpp host/manual/Page.cpp host/manual/Surface.cpp)
target_link_libraries(kal_manual PRIVATE kal_host CLI11::CLI11)

# The name and time of a file that gzip keeps would be another one each time.
set(KAL_MANUAL ${CMAKE_BINARY_DIR}/manual)
file(MAKE_DIRECTORY ${KAL_MANUAL})
add_custom_command(
  OUTPUT ${KAL_MANUAL}/kalcogcheck.1 ${KAL_MANUAL}/kalcogcheck.it.1
    ${KAL_MANUAL}/kalcogcheck.1.gz ${KAL_MANUAL}/kalcogcheck.it.1.gz
    ${KAL_MANUAL}/kalcogcheck.bash ${KAL_MANUAL}/_kalcogcheck
  COMMAND kal_manual ${KAL_MANUAL}
  COMMAND gzip -9nkf ${KAL_MANUAL}/kalcogcheck.1 ${KAL_MANUAL}/kalcogcheck.it.1
  DEPENDS kal_manual
  VERBATIM)
add_custom_target(manual ALL DEPENDS ${KAL_MANUAL}/kalcogcheck.1)

install(FILES ${KAL_MANUAL}/kalcogcheck.1.gz
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT host)
install(FILES ${KAL_MANUAL}/kalcogcheck.it.1.gz
  DESTINATION ${CMAKE_INSTALL_MANDIR}/it/man1 RENAME kalcogcheck.1.gz COMPONENT host)
install(FILES ${KAL_MANUAL}/kalcogcheck.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kalcogcheck COMPONENT host)
install(FILES ${KAL_MANUAL}/_kalcogcheck
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT host)

if(BUILD_TESTING)
  add_test(NAME Manual
    COMMAND python3 ${CMAKE_SOURCE_DIR}/tests/manual.py $<TARGET_FILE:kalcogcheck> ${KAL_MANUAL})
endif()
