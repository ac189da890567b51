# What is installed, and the packages that are made of it: component `host` is the package
# kalcogcheck, component `dev` the package libkalcogcheck-dev. Included behind all targets.
include(CMakePackageConfigHelpers)

# A version that is handed out is one that the changelog tells of.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
file(STRINGS CHANGELOG.md headings REGEX "^## ")
if(NOT "## ${KAL_VERSION_TEXT}" IN_LIST headings)
  message(FATAL_ERROR "CHANGELOG.md has no entry for version ${KAL_VERSION_TEXT}")
endif()

# The headers of a native host: KalCOGCheck.h, MemoryRecordset.h and what the two include. They are
# handed out flat, as <kal/NAME>, and include each other so: names such as "platform/Date.h" would
# meet those of other programs. Nothing else of the sources can be reached from them.
set(KAL_PUBLIC_HEADERS
  checker/KalCOGCheck.h frame/Findings.h
  platform/Currency.h platform/Date.h platform/Decimal.h platform/MemoryRecordset.h
  platform/Recordset.h platform/RunTimeError.h platform/Unread.h platform/Variant.h
  platform/Wording.h siblings/Members.h siblings/Selection.h siblings/Siblings.h)
foreach(header ${KAL_PUBLIC_HEADERS})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
  get_filename_component(name ${header} NAME)
  file(READ ${header} text)
  string(REGEX REPLACE "#include \"[a-z]+/([A-Za-z]+\\.h)\"" "#include <kal/\\1>" text "${text}")
  file(CONFIGURE OUTPUT include/kal/${name} CONTENT "${text}" @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/include/kal/${name}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kal COMPONENT dev)
endforeach()

# The library, as KalCOGCheck::KalCOGCheck and for pkg-config.
set_target_properties(kal_core PROPERTIES EXPORT_NAME KalCOGCheck OUTPUT_NAME kalcogcheck)
target_compile_features(kal_core PUBLIC cxx_std_20)
target_include_directories(kal_core INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(kal_native_host PRIVATE ${CMAKE_BINARY_DIR}/include)
set(KAL_CONFIG_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/KalCOGCheck)
install(TARGETS kal_core EXPORT KalCOGCheck
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
install(EXPORT KalCOGCheck FILE KalCOGCheckConfig.cmake NAMESPACE KalCOGCheck::
  DESTINATION ${KAL_CONFIG_FOLDER} COMPONENT dev)
write_basic_package_version_file(KalCOGCheckConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KalCOGCheckConfigVersion.cmake
  DESTINATION ${KAL_CONFIG_FOLDER} COMPONENT dev)
string(REGEX REPLACE "[^/]+" ".." KAL_UP_TO_PREFIX ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
configure_file(packaging/kalcogcheck.pc.in kalcogcheck.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kalcogcheck.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
set(KAL_DEV_DOCS ${CMAKE_INSTALL_DATAROOTDIR}/doc/libkalcogcheck-dev)
install(FILES host/example/NativeHost.cpp host/example/CMakeLists.txt
  DESTINATION ${KAL_DEV_DOCS}/examples COMPONENT dev)

# The program, what there is to read about it, and the sample entries.
set(KAL_HOST_DOCS ${CMAKE_INSTALL_DATAROOTDIR}/doc/kalcogcheck)
install(TARGETS kalcogcheck RUNTIME COMPONENT host)
foreach(paper entry messages recording server windows)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS docs/${paper}.md)
  file(READ docs/${paper}.md text)
  # The samples lie elsewhere there, and the sources nowhere.
  string(REPLACE "](../host/samples/" "](examples/" text "${text}")
  string(REGEX REPLACE "\\[([^]]*)\\]\\((\\.\\./|decisions/)[^)]*\\)" "\\1" text "${text}")
  file(WRITE ${CMAKE_BINARY_DIR}/docs/${paper}.md "${text}")
  install(FILES ${CMAKE_BINARY_DIR}/docs/${paper}.md DESTINATION ${KAL_HOST_DOCS} COMPONENT host)
endforeach()
file(GLOB samples CONFIGURE_DEPENDS host/samples/*.json)
install(FILES ${samples} host/example/client.py DESTINATION ${KAL_HOST_DOCS}/examples COMPONENT host)

# What a Debian package says of itself: licence, changelog of the product and of the package. The
# headers of these libraries become part of the program, so what they are licensed under goes along.
foreach(library nlohmann-json3-dev libcli11-dev libkainjow-mustache-dev libsimdjson-dev)
  install(FILES /usr/share/doc/${library}/copyright DESTINATION ${KAL_HOST_DOCS}/notices
    RENAME ${library} COMPONENT host EXCLUDE_FROM_ALL)
endforeach()
string(TIMESTAMP KAL_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component host dev)
  string(TOUPPER ${component} upper)
  set(package kalcogcheck)
  if(component STREQUAL dev)
    set(package libkalcogcheck-dev)
  endif()
  configure_file(packaging/changelog.Debian.in packaging/${component}/changelog.Debian @ONLY)
  configure_file(CHANGELOG.md packaging/${component}/changelog COPYONLY)
  foreach(changelog changelog changelog.Debian)
    execute_process(COMMAND gzip -9nf ${CMAKE_BINARY_DIR}/packaging/${component}/${changelog}
      COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${CMAKE_BINARY_DIR}/packaging/${component}/${changelog}.gz
      DESTINATION ${KAL_${upper}_DOCS} COMPONENT ${component} EXCLUDE_FROM_ALL)
  endforeach()
  install(FILES LICENSE DESTINATION ${KAL_${upper}_DOCS} RENAME copyright COMPONENT ${component})
  configure_file(packaging/lintian-overrides.in packaging/${component}/lintian-overrides @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/packaging/${component}/lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME ${package}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kalcogcheck)
set(CPACK_PACKAGE_VERSION ${KAL_VERSION_TEXT})
set(CPACK_PACKAGE_CONTACT "KalCOGCheck authors <kalcogcheck@localhost>")
set(CPACK_COMPONENTS_ALL host dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_HOST_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_HOST_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS "cmake, pkg-config")
set(CPACK_COMPONENT_HOST_DESCRIPTION "checker of Italian journal entries
May a journal entry (prima nota) be saved, modified or deleted? The program
reads entries as JSON, checks them against the books of a company, which is
a file or lies on a server, and answers what blocks and what is to be
confirmed, each with its reason. It only reads the books.")
set(CPACK_COMPONENT_DEV_DESCRIPTION "checker of Italian journal entries, to build into a program
The checker as a static library, for programs in C++20 that hold the entry
and the books themselves: the headers, a package for CMake and one for
pkg-config, and a host in one page as an example.")
include(CPack)
