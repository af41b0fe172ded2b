# One target that carries the warnings; everything of ours links it. Each is an error where we know the
# compiler: a Mac's is whichever its Xcode brings.
add_library(vistrel_warnings INTERFACE)
if(NOT APPLE)
  target_compile_options(vistrel_warnings INTERFACE -Werror)
endif()
target_compile_options(vistrel_warnings INTERFACE
  -Wall
  -Wextra
  -Wpedantic
  -Wshadow                # a name that hides another reads as the wrong one
  -Wnon-virtual-dtor      # deleting through such a base is undefined
  -Woverloaded-virtual    # a near miss of an override
  -Wold-style-cast        # hides which cast was meant
  -Wcast-align
  -Wunused
  -Wnull-dereference
  -Wimplicit-fallthrough
  -Wextra-semi
  -Wno-missing-field-initializers  # designated initialisers leave the rest at its defaults
)
