# What `cmake --install` lays down: program, library, headers, the CMake package
# and the pkg-config file, the lexicon where one was made, and the licence.
include(CMakePackageConfigHelpers)

set(TAVO_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/tavo)

install(TARGETS tavo EXPORT tavoTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tavo DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT tavoTargets NAMESPACE tavo:: DESTINATION ${TAVO_PACKAGE_DIR})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/tavoConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/tavoConfig.cmake INSTALL_DESTINATION ${TAVO_PACKAGE_DIR})
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/tavoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tavoConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/tavoConfigVersion.cmake
  DESTINATION ${TAVO_PACKAGE_DIR})

# The file finds its prefix from where it lies, so that --prefix at install time holds.
file(RELATIVE_PATH TAVO_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" TAVO_PC_TO_PREFIX "${TAVO_PC_TO_PREFIX}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/tavo.pc.in ${CMAKE_CURRENT_BINARY_DIR}/tavo.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tavo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TAVO_BUILD_TOOLS)
  install(TARGETS tavo_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# The lexicon's init file names its files by absolute paths.
install(DIRECTORY ${PROJECT_BINARY_DIR}/share/tavo DESTINATION ${CMAKE_INSTALL_DATADIR} OPTIONAL)
install(CODE "
  set(folder \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/tavo\")
  if(EXISTS \"\$ENV{DESTDIR}\${folder}/tavo.init\")
    file(READ \"\$ENV{DESTDIR}\${folder}/tavo.init\" text)
    string(REPLACE \"${PROJECT_BINARY_DIR}/share/tavo\" \"\${folder}\" text \"\${text}\")
    file(WRITE \"\$ENV{DESTDIR}\${folder}/tavo.init\" \"\${text}\")
  endif()")

install(FILES ${PROJECT_SOURCE_DIR}/rules/phrases.rules DESTINATION ${CMAKE_INSTALL_DATADIR}/tavo/rules)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

# What lies below the prefix, for scripts/uninstall: names relative to it, so that the tree may
# be moved. Comes last.
install(CODE "
  set(names \"\")
  foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
    file(RELATIVE_PATH name \"\${CMAKE_INSTALL_PREFIX}\" \"\${file}\")
    string(APPEND names \"\${name}\\n\")
  endforeach()
  set(list \"${CMAKE_INSTALL_DATADIR}/tavo/installed.txt\")
  file(WRITE \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${list}\" \"\${names}\${list}\\n\")")
