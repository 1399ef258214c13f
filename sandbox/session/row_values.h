// Values on their way into a column: fitted to its datatype, or refused as Oracle refuses them.
#pragma once

#include "sandbox/redo/redo_record.h"
#include "sandbox/store/table.h"

namespace quillmere::sandbox {

// `value` is of the column's kind already. ORA-12899, 01438 and the like.
Status FitValue(const Table& table, const Column& column, const Datum& value, RowValue* out);

// "OWNER"."TABLE"."COLUMN"
std::string QuotedColumn(const Table& table, const Column& column);

}  // namespace quillmere::sandbox
