# SPDX-License-Identifier: MIT
# For Windows everything stands in one folder, where the programs look for it, and goes into a zip:
# "cpack" in the build's folder.
install(DIRECTORY ${manual} ${CMAKE_SOURCE_DIR}/skin DESTINATION .)
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE ${CMAKE_SOURCE_DIR}/README.md ${CMAKE_SOURCE_DIR}/CHANGELOG.md
              ${CMAKE_SOURCE_DIR}/SECURITY.md DESTINATION .)
install(TARGETS quillmere-cli quillmere-sandbox quillmere_sandbox RUNTIME DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME quillmere-${PROJECT_VERSION}-windows-x86_64)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_SOURCE_DIR}/out/windows)
set(CPACK_STRIP_FILES ON)
include(CPack)
