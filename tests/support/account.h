// SPDX-License-Identifier: MIT
// Tests on files in memory that give an account of what happens, paragraph by paragraph. It is
// compared with the text beside the test, "Suite.Test.txt" in the folder ACCOUNTS.
#pragma once

#include <map>
#include <mutex>
#include <sstream>
#include <string>

#include "support/memory_files.h"
#include "support/stored_text.h"

#ifndef ACCOUNTS
#define ACCOUNTS "."
#endif

namespace quillmere {

class AccountTest : public ::testing::Test {
 protected:
  AccountTest() {
    files.on_operation = [this](const testing::FileOperation& operation) {
      const std::size_t name = operation.path.rfind(" -> ");
      if (name != std::string::npos && files.Content(operation.path.substr(0, name)) != "(none)") {
        const std::lock_guard lock(mutex_);  // threads may write
        renamed_ += " " + operation.path.substr(name + 10);
      }
      const bool refused = !refused_file_.empty() && operation.what == refused_what_ &&
                           operation.path.find(refused_file_) != std::string::npos;
      return refused ? FileStatus{FileCode::NoSpace, "full"} : FileStatus();
    };
  }
  void TearDown() override {
    if (account.str().empty()) return;
    const auto& test = *::testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(test.test_suite_name()) + "." + test.name() + ".txt";
    ExpectStored(account.str(), std::filesystem::path(ACCOUNTS) / name);
  }

  // From now on the operation fails on files whose path has this part, as on a full disk.
  void Refuse(std::string what = {}, std::string file = {}) {
    refused_what_ = std::move(what);
    refused_file_ = std::move(file);
  }

  // What was written by replacing a file, then each file that is another than at the last call:
  // what it holds, or what it holds more.
  void TellFiles() {
    if (!renamed_.empty()) account << "written:" << std::exchange(renamed_, {}) << "\n";
    std::map<std::string, std::string> now = files.All("/work");
    for (const auto& [name, old] : told_) {
      if (!now.contains(name)) account << "gone: " << name << "\n";
    }
    for (const auto& [name, content] : now) {
      const auto old = told_.find(name);
      if (old != told_.end() && old->second == content) continue;
      const bool grew = old != told_.end() && content.starts_with(old->second);
      const std::string shown = grew ? content.substr(old->second.size()) : content;
      const bool text = shown.find('\0') == std::string::npos;
      account << "[" << name << (grew ? "] and\n" : "]\n")
              << (text ? Shown(shown) : std::to_string(shown.size()) + " bytes");
      if (!text || !shown.ends_with('\n')) account << "\n";
    }
    told_ = std::move(now);
  }

  // They are as they should be: nothing is to be told of them.
  void ForgetFiles() {
    told_ = files.All("/work");
    renamed_.clear();
  }

  testing::MemoryFiles files;
  std::ostringstream account;

 private:
  std::string refused_what_, refused_file_;
  std::mutex mutex_;
  std::string renamed_;
  std::map<std::string, std::string> told_;
};

}  // namespace quillmere
