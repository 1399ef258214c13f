// SPDX-License-Identifier: MIT
// Schema operations on a scripted client, with a listener that writes down what it hears.
#pragma once

#include "schemaops/schema_operations.h"
#include "support/memory_files.h"
#include "support/scripted_oci.h"
#include "support/stored_text.h"

namespace quillmere {

using Lines = std::vector<std::string>;

struct HeardLines final : SchemaListener {
  bool OnProgress(std::string_view what, std::size_t done, std::size_t total) override {
    progress.push_back(std::string(what) + " " + std::to_string(done) + "/" +
                       std::to_string(total));
    return progress.size() <= allowed;
  }
  void OnResult(std::string_view line, bool failed) override {
    lines.push_back((failed ? "! " : "") + std::string(line));
  }
  void OnDetail(std::string_view line) override { lines.push_back("- " + std::string(line)); }

  Lines progress;
  Lines lines;
  std::size_t allowed = 1000000;
};

class SchemaOpsTest : public ::testing::Test {
 protected:
  SchemaOpsTest() {
    source_.name = "FROM";
    target_.name = "TO";
  }

  // Entries of the log since the last call, without their stamps; errors begin with "! ".
  Lines TakeLog() {
    Lines lines;
    for (; taken_ < log_.Entries().size(); ++taken_) {
      const MessageEntry& entry = log_.Entries()[taken_];
      lines.push_back((entry.error ? "! " : "") + entry.text.substr(18));
    }
    return lines;
  }

  // The lists of the source's record.
  std::string Lists() const {
    std::string text;
    const auto add = [&](std::initializer_list<std::string_view> texts) {
      for (const std::string_view part : texts) text.append("  ").append(part);
      text += '\n';
    };
    for (const TableRecord& t : source_.tables) {
      add({t.table_owner, t.table_name, t.tablespace, std::to_string(t.rows)});
    }
    for (const KeyRecord& k : source_.primary_keys) {
      add({k.table_owner, k.table_name, k.key_name, k.status});
    }
    for (const IndexRecord& i : source_.indexes) {
      add({i.table_owner, i.table_name, i.index_owner, i.index_name, i.type, i.status});
    }
    return text;
  }

  // Statements that changed something since the last call, each with the number of its session
  // among those begun since.
  Lines TakeChanges() {
    Lines changes;
    const int before = sessions_;
    for (const std::string& call : script_.TakeTranscript()) {
      sessions_ += call == "HandleAlloc(env1, err, 0)";
      if (!call.starts_with("StmtPrepare") || call.find("\"select") != std::string::npos) continue;
      const std::size_t quote = call.find('"');
      changes.push_back(std::to_string(std::stoi(call.substr(call.find("err") + 3)) - before) +
                        ": " + call.substr(quote + 1, call.rfind('"') - quote - 1));
    }
    return changes;
  }

  // The account of an operation, and how it goes when each of its connections, statements and
  // fetches fails in turn.
  std::string Accounts(const std::string& name, const std::function<std::string()>& account) {
    std::string text = "=== " + name + "\n" + account();
    for (const std::string call : {"SessionBegin", "StmtExecute", "StmtFetch2"}) {
      for (int n = 0;; ++n) {
        script_.FailOn(call, "ORA-00054: resource busy", 54, n);
        const std::string told = account();
        const std::string failed = script_.TakeFailed();
        if (failed.empty()) break;
        const std::size_t sql = failed.find(")  ");
        const std::string what = sql == std::string::npos ? call : failed.substr(sql + 3);
        text += what + " fails\n" + told;
      }
      script_.ForgetFailures();
    }
    return text;
  }

  testing::ScriptedOci script_;
  OciLibrary library_{script_.Api()};
  testing::MemoryFiles files_;
  SystemClock clock_;
  Settings settings_;
  MessageLog log_{files_, "/work", clock_, settings_};
  SchemaOperations operations_{library_, log_, settings_};
  HeardLines heard_;
  DataSource source_;
  DataSource target_;
  std::size_t taken_ = 0;
  int sessions_ = 0;
};

}  // namespace quillmere
