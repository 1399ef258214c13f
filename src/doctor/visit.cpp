// SPDX-License-Identifier: MIT
#include "doctor/visit.h"

#include "engine/rewriter.h"
#include "foundation/text.h"
#include "oracle/source_facts.h"

namespace quillmere::doctor {
namespace {

constexpr oci::sb4 kNoSuchTable = 942;
constexpr oci::sb4 kNoPrivilege = 1031;

void Connect(Side& side) {
  side.connected = side.session.Connect(side.log_on);
  if (!side.connected) side.why_not = side.session.LastError();
}

}  // namespace

Visit::Visit(const Patient& patient, OciLibrary& library, const Clock& clock,
             const DoctorWatch& watch)
    : patient_(patient),
      library_(library),
      clock_(clock),
      watch_(watch),
      source_(library, patient.source),
      destination_(library, patient.destination) {
  for (Side* const side : {&source_, &destination_}) {
    side->session.StopWhen([this] { return watch_ && !watch_(number_, check_); });
    Connect(*side);
  }
}

Side& Visit::SourceTables() {
  if (patient_.container.empty() || !source_.connected) return source_;
  if (inside_ == nullptr) {
    inside_ = std::make_unique<Side>(library_, patient_.source);
    Connect(*inside_);
    if (inside_->connected && !SourceFacts(inside_->session).Enter(patient_.container)) {
      inside_->connected = false;
      inside_->why_not = inside_->session.LastError();
    }
  }
  return *inside_;
}

void Visit::Begin(int number, std::string_view check) {
  number_ = number;
  check_ = check;
  begin_ = findings_.size();
  goes_on_ = !watch_ || watch_(number, check);
}

void Visit::End(std::string text) {
  if (findings_.size() == begin_) Say(Grade::Ok, {}, std::move(text), {}, nullptr);
}

void Visit::Say(Grade grade, std::string subject, std::string text, std::string cure,
                const Side* where) {
  std::string database = cure.empty() || where == nullptr ? std::string() : where->log_on.name;
  findings_.push_back({number_, check_, grade, std::move(subject), std::move(text), std::move(cure),
                       std::move(database)});
}

void Visit::Unknown(const Side& side, const std::string& why, std::string cure) {
  Warn(side.log_on.name, "could not be checked: " + why, std::move(cure), &side);
}

bool Visit::Connected(const Side& side) {
  if (side.connected) return true;
  if (&side != inside_.get()) {
    Unknown(side, "not logged on");  // why not is what the first check says
  } else {
    const bool entering = side.session.LastErrorCode() == kNoPrivilege;
    Unknown(side, side.why_not, entering ? "grant set container to " + UserName(side) + ";" : "");
  }
  return false;
}

bool Visit::Read(Side& side, std::string_view sql, std::size_t columns, TextRows& rows) {
  if (!Connected(side)) return false;
  if (ReadRows(side.session, sql, columns, rows)) return true;
  const oci::sb4 code = side.session.LastErrorCode();
  const bool grant = code == kNoSuchTable || code == kNoPrivilege;
  Unknown(side, side.session.LastError(),
          grant ? "grant select any dictionary to " + UserName(side) + ";" : "");
  return false;
}

bool Visit::ReadOne(Side& side, std::string_view sql, std::string& value) {
  TextRows rows;
  if (!Read(side, sql, 1, rows)) return false;
  value = rows.empty() ? std::string() : rows.front().front();
  return true;
}

std::string UserName(const Side& side) {
  const std::string& user = side.log_on.user_id;
  return user.starts_with('"') ? user : SqlName(UpperCase(user));
}

std::string Command(std::string_view command) {
  return "-- quillmere-cli " + OnOneLine(command);
}

}  // namespace quillmere::doctor
