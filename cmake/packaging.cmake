# What is installed, and the Debian package of it (./package).
include(GNUInstallDirs)
set(package varzelin-als-demonstration)
set(data ${PROJECT_SOURCE_DIR}/data)
set(made ${PROJECT_BINARY_DIR}/data)
set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The day of the release stands in the changelog; the newest entry is the first.
file(STRINGS ${data}/debian/changelog newest REGEX "^${package} |^ -- " LIMIT_COUNT 2)
list(GET newest 0 title)
list(GET newest 1 signature)
if(NOT title MATCHES "\\(${PROJECT_VERSION}\\)")
  message(FATAL_ERROR "data/debian/changelog doesn't begin with version ${PROJECT_VERSION}")
endif()
string(REGEX REPLACE "^.*>  " "" released ${signature})
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date -u -d ${released} "+%F;%B %-d, %Y"
  OUTPUT_VARIABLE released OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
list(GET released 0 release_date)
list(GET released 1 release_day)

# Debian's form of the licence: the same words, indented, and a dot for each empty line.
file(READ ${PROJECT_SOURCE_DIR}/LICENSE license)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)\n\n(.*)\n$" license "${license}")
set(copyright_holder ${CMAKE_MATCH_1})
string(REPLACE "\n" "\n " license_text " ${CMAKE_MATCH_2}")
string(REPLACE "\n \n" "\n .\n" license_text "${license_text}")
configure_file(${data}/debian/copyright.in ${made}/copyright @ONLY)

set(metainfo localhost.varzelin.als_demonstration.metainfo.xml)
configure_file(${data}/${metainfo}.in ${made}/${metainfo} @ONLY)

# Manual pages and the changelog are installed compressed.
function(compressed file result)
  add_custom_command(OUTPUT ${made}/${result}.gz DEPENDS ${file} VERBATIM
    COMMAND gzip -9nc ${file} > ${made}/${result}.gz)
  set_property(GLOBAL APPEND PROPERTY compressed_files ${made}/${result}.gz)
endfunction()
foreach(page varzelin-als-console.1 varzelin-als-demonstration.1)
  configure_file(${data}/${page}.in ${made}/${page} @ONLY)
  compressed(${made}/${page} ${page})
endforeach()
compressed(${data}/varzelin-als-simulated.1 varzelin-als-simulated.1)
compressed(${data}/debian/changelog changelog)
get_property(compressed_files GLOBAL PROPERTY compressed_files)
add_custom_target(compressed_documents ALL DEPENDS ${compressed_files})
set(manual_pages ${compressed_files})
list(REMOVE_ITEM manual_pages ${made}/changelog.gz)

install(TARGETS varzelin-als-demonstration varzelin-als-simulated varzelin-als-console)
install(FILES ${data}/varzelin-als-demonstration.desktop ${data}/varzelin-als-simulated.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${data}/varzelin-als-demonstration.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${made}/${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${data}/70-varzelin-als.rules DESTINATION lib/udev/rules.d)
install(FILES ${manual_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${made}/copyright ${made}/changelog.gz DESTINATION ${documents})
install(DIRECTORY docs examples DESTINATION ${documents})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${package})
set(CPACK_PACKAGE_CONTACT "Varzelin developers <varzelin@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "work light sensors on a USB evaluation board")
set(CPACK_PACKAGE_DESCRIPTION
"Works ambient light, infrared and proximity sensors on an evaluation board,
a bridge from USB to I2C with two ports. Readings scroll across a chart and
are written to a file. A register workbench, scripts and a panel for the
ports reach any I2C device on the board.
.
A simulated board makes all of it work without hardware, and a console is
the whole program without windows.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The permission for the board: udev reads the rule, logind knows who is logged in.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "udev, default-logind | logind")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS qt6-wayland)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${data}/debian/postinst ${data}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
