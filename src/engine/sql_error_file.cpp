// SPDX-License-Identifier: MIT
#include "engine/sql_error_file.h"

namespace quillmere {

void WriteSqlErrorFile(const EngineContext& context, std::string_view text) {
  const std::string line = FormatTimeStamp(context.clock.Now()) + " " + std::string(text) + "\n";
  std::string error;
  if (!ReplaceFile(context.files, context.working_folder / "sqlerror.log", line,
                   FileAccess::OwnerOnly, error)) {
    context.log.WriteGeneral(error);
  }
}

}  // namespace quillmere
