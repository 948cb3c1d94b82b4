# What is installed, and where. The program looks for tuning files in its own folder, so it has one;
# the path of commands gets links to it. The tools carry the program's name there, for their own
# names are too common for a folder that all packages share.
include(GNUInstallDirs)

set(program_folder lib/tonalyx)
set(links ${CMAKE_BINARY_DIR}/packaging/links)

install(TARGETS tonalyx tonalyx-engine regtool enginemon laptopctl vtdmake RUNTIME DESTINATION ${program_folder})

function(tonalyx_command command target)
  file(CREATE_LINK ../${program_folder}/${target} ${links}/${command} SYMBOLIC)
  install(FILES ${links}/${command} DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${CMAKE_SOURCE_DIR}/docs/man/${command}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endfunction()

file(MAKE_DIRECTORY ${links})
tonalyx_command(tonalyx tonalyx)
tonalyx_command(tonalyx-engine tonalyx-engine)
foreach(tool IN ITEMS regtool enginemon laptopctl vtdmake)
  tonalyx_command(tonalyx-${tool} ${tool})
endforeach()

configure_file(${CMAKE_CURRENT_LIST_DIR}/example.norvane.tonalyx.metainfo.xml.in
  ${CMAKE_BINARY_DIR}/packaging/example.norvane.tonalyx.metainfo.xml @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in
  ${CMAKE_BINARY_DIR}/packaging/changelog @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/packaging/example.norvane.tonalyx.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/tonalyx.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/tonalyx.tmpfiles DESTINATION lib/tmpfiles.d
  RENAME tonalyx.conf)

set(icons ${CMAKE_SOURCE_DIR}/resources/icons)
set(hicolor ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
foreach(size IN ITEMS 16 24 32 48 64 128 256)
  install(FILES ${icons}/tonalyx-${size}.png DESTINATION ${hicolor}/${size}x${size}/apps
    RENAME tonalyx.png)
endforeach()
install(FILES ${icons}/tonalyx.svg DESTINATION ${hicolor}/scalable/apps)

install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}
  FILES_MATCHING PATTERN "*.md" PATTERN man EXCLUDE PATTERN images EXCLUDE)
install(FILES ${CMAKE_SOURCE_DIR}/resources/samples/sample.json
  ${CMAKE_SOURCE_DIR}/docs/examples/engine.c
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
