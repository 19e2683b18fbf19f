# Cross build for 64-bit Windows with MinGW-w64 (Debian g++-mingw-w64-x86-64).
# The posix thread model gives std::thread and std::mutex; the tests run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(ZELT_MINGW_PREFIX x86_64-w64-mingw32)

find_program(CMAKE_C_COMPILER NAMES ${ZELT_MINGW_PREFIX}-gcc-posix ${ZELT_MINGW_PREFIX}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${ZELT_MINGW_PREFIX}-g++-posix ${ZELT_MINGW_PREFIX}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${ZELT_MINGW_PREFIX}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${ZELT_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Test programs carry their runtime: no MinGW DLLs to copy next to them for Wine.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

find_program(ZELT_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(ZELT_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${ZELT_WINE})
endif()
