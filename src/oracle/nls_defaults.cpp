// SPDX-License-Identifier: MIT
#include "oracle/nls_defaults.h"

#include "oracle/platform.h"

namespace quillmere {

void SetNlsDefaults() {
  // Without NLS_LANG a client sends none of the others to the server.
  SetEnvironmentDefault("NLS_LANG", "AMERICAN_AMERICA.AL32UTF8");
  SetEnvironmentDefault("NLS_DATE_FORMAT", "YYYY-MM-DD HH24:MI:SS");
  SetEnvironmentDefault("NLS_TIMESTAMP_FORMAT", "YYYY-MM-DD HH24:MI:SS.FF");
  SetEnvironmentDefault("NLS_TIMESTAMP_TZ_FORMAT", "YYYY-MM-DD HH24:MI:SS.FF TZH:TZM");
  SetEnvironmentDefault("NLS_NUMERIC_CHARACTERS", ".,");
}

}  // namespace quillmere
