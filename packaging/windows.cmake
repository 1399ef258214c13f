# SPDX-License-Identifier: MIT
# For Windows everything stands in one folder, where the programs look for it, and goes into a zip:
# "cpack" in the build's folder.
install(DIRECTORY ${manual} ${CMAKE_SOURCE_DIR}/skin DESTINATION .)
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE ${CMAKE_SOURCE_DIR}/README.md ${CMAKE_SOURCE_DIR}/CHANGELOG.md
              ${CMAKE_SOURCE_DIR}/SECURITY.md DESTINATION .)
install(TARGETS quillmere-cli quillmere-sandbox quillmere_sandbox RUNTIME DESTINATION .)
if(TARGET quillmere)
  set(qt ${QUILLMERE_WINDOWS_LIBRARIES})
  install(TARGETS quillmere RUNTIME DESTINATION .)
  foreach(library Core Gui Widgets)
    install(FILES $<TARGET_FILE:Qt6::${library}> DESTINATION .)
  endforeach()
  install(FILES ${qt}/plugins/platforms/qwindows.dll DESTINATION platforms)
  install(FILES ${qt}/plugins/styles/qwindowsvistastyle.dll DESTINATION styles)
  # What Qt's plugins were linked with.
  foreach(library libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll
                    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    cmake_path(NORMAL_PATH file)
    install(FILES ${file} DESTINATION .)
  endforeach()
  # They come with names of functions for debuggers, which are more than half of them.
  install(CODE "file(GLOB_RECURSE libraries \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/*.dll\")
                execute_process(COMMAND ${CMAKE_STRIP} --strip-unneeded \${libraries}
                                COMMAND_ERROR_IS_FATAL ANY)")
  # What Qt is under.
  install(FILES /usr/share/common-licenses/LGPL-3 /usr/share/common-licenses/GPL-3 DESTINATION licenses)
endif()

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME quillmere-${PROJECT_VERSION}-windows-x86_64)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_SOURCE_DIR}/out/windows)
set(CPACK_STRIP_FILES ON)
include(CPack)
