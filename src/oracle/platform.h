// SPDX-License-Identifier: MIT
// What loading a client library needs of the operating system. Each platform has a file of its own.
// Asked once, before the program starts threads.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillmere {

// Null and a reason when it cannot be loaded. Never unloaded.
void* OpenLibrary(const std::string& name, std::string& reason);

// Null when the library does not export the name.
void* FindSymbol(void* library, const char* name);

// File names and paths under which Oracle's client library may be found, in the order to try.
std::vector<std::string> OracleClientNames();

std::string SandboxLibraryName();

// What an operator does about a client library that was not found.
std::string ClientInstallHint();

// Sets the variable in this process's environment unless it is set already.
void SetEnvironmentDefault(const char* name, const char* value);

}  // namespace quillmere
