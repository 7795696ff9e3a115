# Cross-build for Windows x64 with MinGW-w64 (posix threads); programs run
# under Wine through the runner beside this file.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(TW_MINGW x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${TW_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TW_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${TW_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${TW_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh --prefix ${CMAKE_BINARY_DIR}/wineprefix)
