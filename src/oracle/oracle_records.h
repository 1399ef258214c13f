// Rows of Oracle's data dictionary, as the catalogue queries return them. Texts are right-trimmed.
#pragma once

#include <cstdint>
#include <string>

namespace quillmere {

struct TableInfo {
  std::string owner;
  std::string table_name;
  std::string tablespace_name;  // empty when the table has none
  std::int32_t num_rows = 0;    // from the statistics; 0 when never analysed
  std::string spare;
};

}  // namespace quillmere
