find_package(PkgConfig REQUIRED)
pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
pkg_get_variable(VISTREL_WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)
find_package(PlasmaWaylandProtocols REQUIRED)
find_program(VISTREL_WAYLAND_SCANNER wayland-scanner REQUIRED)

# Makes the library <name> of a client's side of protocols; each has a header <protocol>.h.
function(vistrel_add_protocols name)
  set(directory ${CMAKE_CURRENT_BINARY_DIR}/${name})
  file(MAKE_DIRECTORY ${directory})
  set(sources)
  foreach(description IN LISTS ARGN)
    cmake_path(GET description STEM protocol)
    set(made ${directory}/${protocol})
    foreach(part client-header.h private-code.c)
      cmake_path(GET part STEM what)
      cmake_path(GET part EXTENSION extension)
      add_custom_command(OUTPUT ${made}${extension}
        COMMAND ${VISTREL_WAYLAND_SCANNER} ${what} ${description} ${made}${extension}
        DEPENDS ${description}
        VERBATIM)
      list(APPEND sources ${made}${extension})
    endforeach()
  endforeach()
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_include_directories(${name} SYSTEM INTERFACE ${directory})
  target_link_libraries(${name} PUBLIC PkgConfig::WAYLAND_CLIENT)
endfunction()
