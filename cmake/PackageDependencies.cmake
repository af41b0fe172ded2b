# Run by cpack once the package's files are in place: it depends on the libraries that the programs
# need, and recommends those that the Wayland half needs beside them, without which it is not loaded.
set(usr ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
file(GLOB programs ${usr}/bin/* ${usr}/libexec/vistrel/vistrel-guard
     ${usr}/libexec/vistrel/vistrel-dialog-keeper)
file(GLOB_RECURSE modules ${usr}/lib/*.so)
list(APPEND modules ${usr}/libexec/vistrel/vistrel-kwin-guard)

# dpkg-shlibdeps wants a package's description, of which it uses nothing.
set(scratch ${CPACK_TOPLEVEL_DIRECTORY}/dependencies)
file(WRITE ${scratch}/debian/control "Source: vistrel\n\nPackage: vistrel\nArchitecture: any\n")
execute_process(
  COMMAND dpkg-shlibdeps -O ${programs} -dRecommends ${modules}
  WORKING_DIRECTORY ${scratch}
  OUTPUT_VARIABLE found
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "shlibs:Depends=([^\n]*)" ignored "${found}")
set(CPACK_DEBIAN_PACKAGE_DEPENDS "${CMAKE_MATCH_1}")
string(REGEX MATCH "shlibs:Recommends=([^\n]*)" ignored "${found}")
string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS ", ${CMAKE_MATCH_1}")
