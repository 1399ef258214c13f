// SPDX-License-Identifier: MIT
// What the dictionary views of a source model answer.
#pragma once

#include <string_view>

#include "sim/destination_model.h"
#include "sim/mining.h"

namespace quillmere::sim {

// Of following by rows.
inline constexpr std::string_view kRowsScn =
    "select max(ktuxescnw * power(2,32) + ktuxescnb) from x$ktuxe";
inline constexpr std::string_view kRowsMembers = "select member from v$logfile where type='ONLINE'";
inline constexpr std::string_view kRowsContents =
    "select scn, sql_redo from v$logmnr_contents where ( operation='INSERT' or operation='UPDATE' "
    "or operation='DELETE' ) and ( seg_owner NOT IN ('SYS', 'SYSTEM') ) ";

// Every query of both ways but those of v$logmnr_contents. False: none of them.
bool Answer(SourceModel& source, std::string_view sql, Rows& rows);

}  // namespace quillmere::sim
