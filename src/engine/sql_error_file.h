// SPDX-License-Identifier: MIT
// sqlerror.log in the working folder: the latest mining error, alone. Internal to engine/.
#pragma once

#include <string_view>

#include "engine/engine_context.h"

namespace quillmere {

// Replaces the file. That it can not be written is for the general log only.
void WriteSqlErrorFile(const EngineContext& context, std::string_view text);

}  // namespace quillmere
