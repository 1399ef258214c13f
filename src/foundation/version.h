// SPDX-License-Identifier: MIT
// Which release this is. It is said once, in the topmost CMakeLists.txt.
#pragma once

namespace quillmere {

const char* ProgramVersion();  // "1.2.3"

}  // namespace quillmere
