// SPDX-License-Identifier: MIT
// One SELECT whose columns are all fetched as text. Internal to oracle/.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "oracle/H_oracle.h"

namespace quillmere {

// The most that a character of any server takes in the client's character set.
inline constexpr oci::sb4 kBytesPerCharacter = 4;

// The step labels of a query; its operation's error texts begin with them.
struct QueryLabels {
  std::string_view allocate;
  std::string_view prepare;
  std::string_view define = "OCIDefineByPos : ";
  std::string_view execute;
  std::string_view fetch;
};

inline constexpr QueryLabels kListLabels{
    "OCIHandleAlloc(Stmt1) : ", "OCIStmtPrepare(SqlStr1) : ", "OCIDefineByPos : ",
    "OCIStmtExecute(Stmthp1) : ", "OCIStmtFetch2 : "};
inline constexpr QueryLabels kSingleLabels{
    "OCIHandleAlloc(Stmt) : ", "OCIStmtPrepare : ", "OCIDefineByPos : ", "OCIStmtExecute : ",
    "OCIStmtFetch2 : "};

// Lives on the stack of one operation of a connected session, which must outlive it, as must the
// labels. Every failing step sets the session's last error under its label and returns false; the
// query is not used further then. The statement handle is freed with the query.
class TextQuery {
 public:
  enum class Row { Fetched, End, Failed };

  TextQuery(OracleSession& session, const QueryLabels& labels);
  ~TextQuery();
  TextQuery(const TextQuery&) = delete;
  TextQuery& operator=(const TextQuery&) = delete;

  bool Allocate();
  bool Prepare(std::string_view sql);
  // Rows that the client fetches ahead in one round trip. Only an optimisation: failure is ignored.
  void SetPrefetch(oci::ub4 rows);
  // One text column after another, each with its capacity in bytes.
  bool Define(const std::vector<oci::sb4>& capacities);
  // For a list: rows come by Fetch.
  bool Execute();
  // For a single row: it is fetched with the execution; no row is a failure, a cut column is not.
  bool ExecuteWithRow();
  Row Fetch();

  // All of the above but Fetch: for a list, and for a single row.
  bool Open(std::string_view sql, const std::vector<oci::sb4>& capacities);
  bool OpenWithRow(std::string_view sql, const std::vector<oci::sb4>& capacities);

  // Of the current row, position from 0: the bytes as they came; without trailing blanks. NULL is
  // the empty text. Valid until the next Fetch.
  std::string_view Raw(std::size_t column) const;
  std::string_view Text(std::size_t column) const;

  // True when a column of the current row did not fit its capacity: any, or one of the first ones.
  bool Truncated() const { return Truncated(columns_.size()); }
  bool Truncated(std::size_t first_columns) const;

  // A whole number; one that 32 bits or the column cannot hold is the nearest that 32 bits do.
  // Anything else fails: "<what> is not a number".
  bool Number(std::size_t column, std::string_view what, std::int32_t& value);

  // For a row that is not taken into a list because a text did not fit: the warning that names it.
  void LeaveOut(std::string_view what, std::string_view name);

  // Tells whoever watches the session's lists; false when the list is to end, as failed.
  bool GoesOn(std::size_t rows);

  // Fails under the label of the step that got the current row. Always false.
  bool Refuse(std::string_view reason);

 private:
  struct Column {
    std::size_t offset = 0;
    oci::sb4 capacity = 0;
    oci::sb2 indicator = 0;
    oci::ub2 length = 0;
  };

  bool Fail(std::string_view label, oci::sword status);
  static bool DidNotFit(const Column& column);
  bool RowWasTruncated(oci::sword status);

  OracleSession& session_;
  const QueryLabels& labels_;
  std::string_view row_label_;  // of the step that got the current row
  oci::OCIStmt* statement_ = nullptr;
  std::vector<Column> columns_;  // not resized after Define: OCI holds pointers into it
  std::vector<char> buffer_;
};

}  // namespace quillmere
