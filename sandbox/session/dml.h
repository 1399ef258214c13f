// SPDX-License-Identifier: MIT
// INSERT, UPDATE and DELETE. Plain functions, run inside a transaction and a statement mark by the
// thread that holds the session.
#pragma once

#include "sandbox/expr/compiler.h"
#include "sandbox/session/row_changer.h"

namespace quillmere::sandbox {

// The table that an Insert, Update or Delete changes; null when the statement is none of these.
const ObjectName* TargetOf(const Statement& statement);

// Runs such a statement on its table; `rows` receives the number of rows changed. After a failure
// the statement must be undone.
Status RunDml(const Statement& statement, const TablePtr& table, const EvalContext& context,
              SqliteConnection* writer, RowChanger* changer, std::int64_t* rows);

}  // namespace quillmere::sandbox
