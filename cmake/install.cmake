# What `cmake --install` puts where, and the Debian package of the same.
include(CMakePackageConfigHelpers)

install(TARGETS korvex korvex_static EXPORT korvex-targets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/korvex TYPE INCLUDE FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/korvex)
install(EXPORT korvex-targets NAMESPACE korvex:: DESTINATION ${package_dir})
configure_package_config_file(cmake/korvex-config.cmake.in korvex-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(korvex-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/korvex-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/korvex-config-version.cmake
  DESTINATION ${package_dir})

# The prefix is known when it is installed, not before.
install(CODE "set(PROJECT_VERSION ${PROJECT_VERSION})
  set(CMAKE_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
  set(CMAKE_INSTALL_LIBDIR ${CMAKE_INSTALL_LIBDIR})
  configure_file(\"${CMAKE_CURRENT_SOURCE_DIR}/cmake/korvex.pc.in\" \"${CMAKE_CURRENT_BINARY_DIR}/korvex.pc\" @ONLY)")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/korvex.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES README.md CHANGELOG.md LICENSE TYPE DOC)
install(FILES docs/man/korvex.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3)

if(KORVEX_CLI)
  install(TARGETS korvex-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES docs/man/korvex.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  # The command knows its own words.
  foreach(shell bash zsh)
    add_custom_command(OUTPUT completion.${shell} DEPENDS korvex-cli
      COMMAND korvex-cli completion ${shell} >completion.${shell})
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/completion.${shell} RENAME $<IF:$<STREQUAL:${shell},zsh>,_korvex,korvex>
      DESTINATION ${CMAKE_INSTALL_DATADIR}/$<IF:$<STREQUAL:${shell},zsh>,zsh/vendor-completions,bash-completion/completions>)
  endforeach()
  add_custom_target(completions ALL DEPENDS completion.bash completion.zsh)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvex)
set(CPACK_PACKAGE_VENDOR Korvex)
set(CPACK_PACKAGE_CONTACT "The Korvex project <korvex@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Barcode symbols for labels: library and command")
set(CPACK_PACKAGE_DESCRIPTION "Draws linear symbols, QR, PDF417, Data Matrix, MaxiCode, GS1 DataBar and composite
symbols, and VERI, exactly as their standards ask: from C, C++ and the shell.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
