// A statement handle: the text, the buffers that columns are fetched into, and the rows that have
// crossed the wire but were not asked for yet.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "oracle/oci_abi.h"
#include "sandbox/session/session.h"

namespace quillmere::sandbox {

struct SessionSlot;

struct DefineBuffer {
  void* value = nullptr;
  oci::sb4 size = 0;
  oci::ub2 type = 0;
  oci::sb2* indicator = nullptr;
  oci::ub2* length = nullptr;
  oci::ub2* code = nullptr;
};

struct StatementState {
  bool prepared = false;
  std::string text;
  oci::ub4 prefetch_rows = 1;
  oci::ub4 prefetch_memory = 0;
  std::vector<DefineBuffer> defines;  // by position, from 0; an empty one has no buffer
  std::shared_ptr<Cursor> cursor;
  std::shared_ptr<SessionSlot> slot;  // the session that the cursor belongs to
  std::deque<DisplayRow> ahead;
  bool at_end = false;
};

// Takes the rows of one exchange: those wanted, and those the prefetch takes along.
Status TakeRows(StatementState* statement, std::size_t wanted);

// Delivers `rows` rows into the buffers; `result` is what the OCI call returns on success. Needs
// the session's lock. Exchanges with the server happen only when too few rows are here.
Status FetchRows(StatementState* statement, oci::ub4 rows, oci::sword* result);

}  // namespace quillmere::sandbox
