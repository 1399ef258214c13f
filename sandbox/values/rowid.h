// SPDX-License-Identifier: MIT
// Row addresses: 18 characters, as Oracle spells them (object, file, block, row). For any thread.
#pragma once

#include <cstdint>
#include <string>

namespace quillmere::sandbox {

std::string RowAddress(std::int64_t table_id, std::int64_t row);

}  // namespace quillmere::sandbox
