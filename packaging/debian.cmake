# The Debian package: one, with both programs. What it depends on is read from the programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrel)
set(CPACK_PACKAGE_VENDOR "The Kestrel developers")
set(CPACK_PACKAGE_CONTACT "The Kestrel developers <maintainers@kestrel.local>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "finder of duplicate songs in a music library")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Kestrel finds the duplicate songs in a large personal music library, tells
which copy of each to keep and why, and leaves every playlist whole. It reads
libraries such as the XML file that music applications export.
.
This package holds the desktop program and kestrel-cli, which does the same
without windows.")
if(TARGET kestrel)
  # Qt's side of Wayland is a plugin, which no program is linked with; that of X11 comes with Qt.
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "dbus-bin, qt6-translations-l10n, qt6-wayland, xdg-utils")
endif()

set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
  GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
