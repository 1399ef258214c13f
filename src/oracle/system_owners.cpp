// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include "oracle/H_oracle.h"

namespace quillmere {
namespace {

// A constant in byte order: filled before any thread runs and only read afterwards.
constexpr std::array<std::string_view, 28> kSystemOwners = {
    "ANONYMOUS", "CTXSYS",  "DBSNMP",     "MDSYS",   "OCITEST", "ODM",   "ODM_MTR",
    "OE",        "OLAPSYS", "ORDPLUGINS", "ORDSYS",  "OUTLN",   "PM",    "QS",
    "QS_ADM",    "QS_CB",   "QS_CBADM",   "QS_CS",   "QS_ES",   "QS_OS", "QS_WS",
    "RMAN",      "SYS",     "SYSTEM",     "WKPROXY", "WKSYS",   "WMSYS", "XDB"};
static_assert(std::is_sorted(kSystemOwners.begin(), kSystemOwners.end()));

}  // namespace

bool IsSystemOwner(std::string_view owner) {
  return std::binary_search(kSystemOwners.begin(), kSystemOwners.end(), owner);
}

}  // namespace quillmere
