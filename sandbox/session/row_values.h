// SPDX-License-Identifier: MIT
// Values on their way into a column and out of it. Plain functions, for any thread.
#pragma once

#include "sandbox/redo/redo_record.h"
#include "sandbox/store/sqlite.h"
#include "sandbox/store/table.h"

namespace quillmere::sandbox {

// Fits a value, which is of the column's kind already, to the column's datatype, or refuses it as
// Oracle does: ORA-12899, 01438 and the like, and `out` is then NULL.
Status FitValue(const Table& table, const Column& column, const Datum& value, RowValue* out);

// Columns of a row that a query stands on.
RowValues ValuesOf(const SqliteStatement& row, std::size_t first, std::size_t count);

// "OWNER"."TABLE"."COLUMN"
std::string QuotedColumn(const Table& table, const Column& column);

}  // namespace quillmere::sandbox
