// Which release of the program this is.
#pragma once

namespace quillmere {

const char* ProgramVersion();  // "1.2.3"

}  // namespace quillmere
