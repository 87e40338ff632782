# What `cmake --install` puts where (GNU directories below the prefix), and the
# Debian package CPack builds from it (`cpack -G DEB` in the build folder, or
# scripts/package.sh).
#
#   bin/varnex, bin/varnex-store
#   share/varnex/              VarnexPub.db and Varnex.html, read-only; the
#                              program copies the database to the user's data
#                              folder on first use (GlobalFunctions.h)
#   share/applications/, share/icons/hicolor/scalable/apps/, share/metainfo/
#   share/man/man1/ (English), share/man/de/man1/ (German)
#   share/bash-completion/completions/varnex-store
include(GNUInstallDirs)

set(VARNEX_APP_ID de.nordquell.Varnex)
set(VARNEX_RELEASE_DATE 2026-11-24)
set(desktop_src ${CMAKE_SOURCE_DIR}/data/desktop)
set(generated ${CMAKE_BINARY_DIR}/install-data)

configure_file(${desktop_src}/${VARNEX_APP_ID}.metainfo.xml.in ${generated}/${VARNEX_APP_ID}.metainfo.xml @ONLY)
foreach(page varnex varnex-store)
  configure_file(${CMAKE_SOURCE_DIR}/data/man/${page}.1.in ${generated}/man/${page}.1 @ONLY)
  configure_file(${CMAKE_SOURCE_DIR}/data/man/de/${page}.1.in ${generated}/man/de/${page}.1 @ONLY)
endforeach()

install(TARGETS varnex RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET varnex-store)
  install(TARGETS varnex-store RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(FILES ${CMAKE_BINARY_DIR}/bin/VarnexPub.db ${CMAKE_SOURCE_DIR}/data/help/Varnex.html
        DESTINATION ${CMAKE_INSTALL_DATADIR}/varnex)
install(FILES ${desktop_src}/${VARNEX_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${desktop_src}/${VARNEX_APP_ID}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${generated}/${VARNEX_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${generated}/man/varnex.1 ${generated}/man/varnex-store.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${generated}/man/de/varnex.1 ${generated}/man/de/varnex-store.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/de/man1)
install(FILES ${desktop_src}/varnex-store.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME varnex-store)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnex)
set(CPACK_PACKAGE_VENDOR Nordquell)
set(CPACK_PACKAGE_CONTACT "Nordquell <varnex@nordquell.de>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Kontakte, Kalender, Mails, Aufgaben und Notizen aufräumen")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Kontakte, Kalender, Mails, Aufgaben und Notizen aufräumen\n Varnex findet doppelte Elemente, korrigiert Namen, vereinheitlicht\n Telefonnummern, sucht und ersetzt, speichert Anlagen in Ordnern und\n trägt Schulferien ein. varnex-store legt Profile an und liest und\n schreibt vCard, iCalendar, eml, mbox und pst.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://nordquell.de/varnex)
# The libraries come from dpkg-shlibdeps; Qt's plugins and translations are
# loaded at run time, so shlibdeps cannot see them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, qt6-translations-l10n")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
include(CPack)
