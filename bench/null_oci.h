// SPDX-License-Identifier: MIT
// A client library without a database: every call succeeds at once. Queries answer canned rows.
#pragma once

#include <string_view>
#include <vector>

#include "oracle/oci_abi.h"

namespace quillmere::bench {

struct RedoRow {
  std::string_view scn;
  std::string_view text;
};

// The table; its queries of two text columns fetch the rows, those of fourteen the same rows as
// transactions of ten changes with all that following by commits asks for; all others find nothing.
// One thread.
OciApi NullOci(const std::vector<RedoRow>* rows = nullptr);

}  // namespace quillmere::bench
