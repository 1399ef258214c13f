# SPDX-License-Identifier: MIT
# For another system there are no packages of the libraries that are headers only, nor of GoogleTest:
# the headers of Debian's packages serve, without the folder that they stand in, and GoogleTest is
# built from its package of sources.
set(headers ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${headers})
foreach(folder CLI nlohmann)
  file(CREATE_LINK /usr/include/${folder} ${headers}/${folder} SYMBOLIC)
endforeach()
foreach(target CLI11::CLI11 nlohmann_json::nlohmann_json)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${headers})
endforeach()
if(QUILLMERE_TESTS)
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()
