if(VISTREL_SANITIZERS)
  add_compile_options(-fsanitize=${VISTREL_SANITIZERS} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VISTREL_SANITIZERS})
endif()
