# The program in bin; the lookup files and the resource file that names their place in zav/etc below the prefix.
include(GNUInstallDirs)
install(TARGETS zavoria DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/share/zav/ DESTINATION zav/etc)
install(CODE [[
    get_filename_component(prefix "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
    file(WRITE "${prefix}/zav/etc/zav.cfg" "*.file_path: ${CMAKE_INSTALL_PREFIX}/zav/etc\n")
]])
install(FILES ${CMAKE_SOURCE_DIR}/man/zavoria.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
