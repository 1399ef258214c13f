// The entries of the function table by subject. Private to expr/.
#pragma once

#include "sandbox/expr/functions.h"

namespace quillmere::sandbox {

void AddNumberFunctions(std::vector<Function>* out);
void AddTextFunctions(std::vector<Function>* out);
void AddTimeFunctions(std::vector<Function>* out);

}  // namespace quillmere::sandbox
