// SPDX-License-Identifier: MIT
// The views of the data dictionary, each a query over the tables that keep it. Made once, then only
// read, on any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sandbox/values/kind.h"

namespace quillmere::sandbox {

enum class ViewAccess { Everybody, Dictionary, SysdbaOnly };

struct ViewColumn {
  std::string name;
  Kind kind = Kind::Text;
};

struct DictionaryView {
  std::string_view name;
  ViewAccess access = ViewAccess::Everybody;
  std::vector<ViewColumn> columns;
  // :log stands for the database's file, :start and :end for the SCNs mined, :record for a record
  // of the redo, :transaction for the open transaction as a table, :last_scn for the SCN given
  // latest, :formats for the session's NLS parameters as a table, :dba for whether it may do all.
  std::string sql;

  // -1 when there is none.
  int FindColumn(std::string_view column) const;
};

// Null when there is none of that name.
const DictionaryView* FindDictionaryView(std::string_view name);

}  // namespace quillmere::sandbox
