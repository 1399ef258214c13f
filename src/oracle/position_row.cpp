// SPDX-License-Identifier: MIT
#include "oracle/position_row.h"

#include "foundation/text.h"
#include "oracle/follow_queries.h"
#include "oracle/text_query.h"

namespace quillmere {
namespace {

constexpr oci::sb4 kNumberBytes = 40;
constexpr oci::sb4 kNameIsUsed = 955;

}  // namespace

bool PositionRow::MakeTable(bool& made) {
  made = session_.Execute(follow::FillIn(follow::kCreatePositions, {owner_}));
  return made || session_.LastErrorCode() == kNameIsUsed;
}

bool PositionRow::Insert(const Value& value) {
  return session_.Execute(follow::FillIn(
      follow::kInsertPosition,
      {owner_, job_id_, std::to_string(value.cutoff_scn), std::to_string(value.batch_remaining)}));
}

bool PositionRow::Lock(std::optional<Value>& value) {
  value.reset();
  TextQuery query(session_, kListLabels);
  if (!query.Open(follow::FillIn(follow::kLockPosition, {owner_, job_id_}),
                  {kNumberBytes, kNumberBytes})) {
    return false;
  }
  const TextQuery::Row row = query.Fetch();
  if (row != TextQuery::Row::Fetched) return row == TextQuery::Row::End;
  Value read;
  if (!ParseNumber(query.Text(0), read.cutoff_scn) ||
      !ParseNumber(query.Text(1), read.batch_remaining)) {
    return query.Refuse("the position row holds something that is not a number");
  }
  value = read;
  return true;
}

bool PositionRow::Update(const Value& value) {
  return session_.Execute(follow::FillIn(
      follow::kUpdatePosition,
      {owner_, std::to_string(value.cutoff_scn), std::to_string(value.batch_remaining), job_id_}));
}

bool PositionRow::Delete() {
  return session_.Execute(follow::FillIn(follow::kDeletePosition, {owner_, job_id_}));
}

}  // namespace quillmere
