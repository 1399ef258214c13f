// SPDX-License-Identifier: MIT
// What the data-source dialogs tell and decide by themselves.
#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "workspace/source_operations.h"

namespace quillmere {

enum class LoginField { Name, UserId, Password, Mode };

// The field that most likely is to be corrected after a refusal.
LoginField FieldToCorrect(const LogOn& login, std::string_view refusal);

// What the log-in dialog says of why it asks: the refusal that the stored log-on met with.
QString WhyAsked(std::string_view data_source, std::string_view refusal);

// What Add would do with the name typed.
QString AddAdvice(const DataSourceRegistry& registry, std::string_view typed);

// What Save would do when `edited` was opened for changing and `typed` stands in the name field.
QString SaveAdvice(const DataSourceRegistry& registry, std::string_view edited,
                   std::string_view typed);

// What is asked before a data source goes, with the jobs that it leaves without a log-on.
QString DeleteQuestion(const JobList& jobs, std::string_view data_source);

}  // namespace quillmere
