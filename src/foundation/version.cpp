// SPDX-License-Identifier: MIT
#include "foundation/version.h"

namespace quillmere {

const char* ProgramVersion() {
  return QUILLMERE_VERSION;
}

}  // namespace quillmere
