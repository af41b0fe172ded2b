# The Debian package: cpack --preset deb. What it holds is what cmake --install installs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vistrel)
set(CPACK_PACKAGE_VENDOR Tollbeck)
set(CPACK_PACKAGE_CONTACT "Tollbeck <vistrel@tollbeck.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "live mirrors of windows in small floating panels")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# So that what is installed knows where: the desktop entry names the program's path.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Whatever the builder's umask is.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

file(READ ${PROJECT_SOURCE_DIR}/resources/debian/description CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackageDependencies.cmake)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pipewire, wireplumber, xdg-desktop-portal")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
