# Compiles and links for macOS on Linux: clang and lld of LLVM 16 against the folder that make_sdk.py
# makes, which CMAKE_OSX_SYSROOT names.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)

set(llvm /usr/lib/llvm-16)
set(CMAKE_CXX_COMPILER ${llvm}/bin/clang++)
set(CMAKE_OBJCXX_COMPILER ${llvm}/bin/clang++)
# Which system; CMAKE_OSX_ARCHITECTURES says for which machines.
set(CMAKE_CXX_COMPILER_TARGET arm64-apple-macosx)
set(CMAKE_OBJCXX_COMPILER_TARGET ${CMAKE_CXX_COMPILER_TARGET})
# Of the archivers, this one alone makes an index of objects for several machines.
set(CMAKE_CXX_ARCHIVE_CREATE "${llvm}/bin/llvm-libtool-darwin -static -o <TARGET> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_FINISH "")
set(CMAKE_OBJCXX_ARCHIVE_CREATE ${CMAKE_CXX_ARCHIVE_CREATE})
set(CMAKE_OBJCXX_ARCHIVE_FINISH "")
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/bin/llvm-install-name-tool CACHE FILEPATH "")

# On macOS the C library shows everything of POSIX without being asked. The headers of newer C++
# libraries, which a Mac's may be, include fewer others.
set(CMAKE_CXX_FLAGS_INIT
  "-D_GNU_SOURCE -D_LIBCPP_REMOVE_TRANSITIVE_INCLUDES \
-nostdinc++ -isystem ${CMAKE_OSX_SYSROOT}/usr/include/c++/v1 \
-B${CMAKE_OSX_SYSROOT}/usr/bin")
set(CMAKE_OBJCXX_FLAGS_INIT ${CMAKE_CXX_FLAGS_INIT})
# Every object is linked, whether or not another needs it. The linker is told where headers are too.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fuse-ld=lld -Wl,-all_load -Wno-unused-command-line-argument")
# There is nothing to link the compiler's first tries with that would run here.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
