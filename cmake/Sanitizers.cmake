if(VISTREL_SANITIZERS)
  add_compile_options(-fsanitize=${VISTREL_SANITIZERS} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  # Lines for the sanitizers' reports; variables, which the dev preset has, would take a tenth longer.
  set(CMAKE_CXX_FLAGS_DEBUG -g1)
  add_link_options(-fsanitize=${VISTREL_SANITIZERS})
endif()
