# SPDX-License-Identifier: MIT
# Toolchain: programs for 64-bit Windows, made on Debian with MinGW-w64 and run by wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# One file, without the compiler's own libraries beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
# What stands in Debian's own folders is for Debian's own compiler.
# What packaging/windows-libraries has built stands in QUILLMERE_WINDOWS_LIBRARIES.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${QUILLMERE_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# The programs that Qt runs while something is built with it are those of Debian's own Qt.
set(QT_HOST_PATH /usr)
file(GLOB qt_host /usr/lib/*/cmake/Qt6HostInfo)
cmake_path(GET qt_host PARENT_PATH QT_HOST_PATH_CMAKE_DIR)
