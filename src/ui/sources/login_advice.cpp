#include "ui/sources/login_advice.h"

namespace quillmere {
namespace {

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

LoginField FieldToCorrect(const SourceLogin& login, std::string_view refusal) {
  if (login.name.empty()) return LoginField::Name;
  if (login.user_id.empty()) return LoginField::UserId;
  // Wrong name or password; expired password; a password that cannot be stored.
  if (Contains(refusal, "ORA-01017") || Contains(refusal, "ORA-28001") ||
      refusal.starts_with("A password ")) {
    return LoginField::Password;
  }
  // No right to SYSDBA; SYS without it.
  if (Contains(refusal, "ORA-01031") || Contains(refusal, "ORA-28009")) return LoginField::Mode;
  // Account locked; no right to log on.
  if (Contains(refusal, "ORA-28000") || Contains(refusal, "ORA-01045")) return LoginField::UserId;
  return LoginField::Name;
}

std::string SaveAdvice(const DataSourceRegistry& registry, std::string_view edited,
                       std::string_view typed) {
  if (typed == edited) {
    return "Save tries the log-on and then keeps it; jobs use it from their next connection on.";
  }
  if (registry.IndexOf(typed) >= 0) {
    return "Save will change the log-on of " + std::string(typed) + ", not that of " +
           std::string(edited) + ".";
  }
  return "A data source keeps its name. To register another one, use New.";
}

}  // namespace quillmere
