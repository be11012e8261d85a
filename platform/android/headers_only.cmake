# Stands in for the NDK's toolchain where there is none: clang for the same target, with libc++ and the C headers of
# Debian's cross compiler. What it compiles can be neither linked nor run.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(ANDROID TRUE)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET aarch64-linux-android29)
set(CMAKE_CXX_COMPILER_TARGET aarch64-linux-android29)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
file(GLOB libcxx /usr/lib/llvm-*/include/c++/v1)
list(GET libcxx -1 libcxx)
# The machine's own come last, for what is headers alone.
set(c_headers "-nostdlibinc -isystem /usr/aarch64-linux-gnu/include -idirafter /usr/include")
set(CMAKE_C_FLAGS_INIT "${c_headers}")
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem ${libcxx} ${c_headers}")
# Nothing is linked, so it need not be found.
set(PR_ANDROID_LOG_LIBRARY log)
