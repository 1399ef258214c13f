// The views of the data dictionary, each a query over the tables that keep it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sandbox/values/datum.h"

namespace quillmere::sandbox {

enum class ViewAccess { Everybody, Dictionary, SysdbaOnly };

struct ViewColumn {
  std::string_view name;
  Kind kind;
};

struct DictionaryView {
  std::string_view name;
  ViewAccess access;
  std::vector<ViewColumn> columns;  // in the order in which the query gives them
  std::string_view sql;             // :log stands for the log file, :user for the session's user
};

// Null when there is none of that name.
const DictionaryView* FindDictionaryView(std::string_view name);

}  // namespace quillmere::sandbox
