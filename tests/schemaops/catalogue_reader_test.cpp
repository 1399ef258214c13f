// SPDX-License-Identifier: MIT
#include "schemaops/schemaops_fixture.h"

namespace quillmere {
namespace {

const std::string kTables = "from dba_all_tables";

class CatalogueReaderTest : public SchemaOpsTest {
 protected:
  void SetUp() override {
    script_.Answer(kTables, {{"S", "A", "USERS", "7"}, {"S", "B", std::string(1, '\0'), "0"}});
    AnswerTable("A", {{"1"}}, {{"PK_A", "ENABLED"}}, {{"IX_A", "NORMAL", "VALID"}});
    AnswerTable("B", {{"0"}}, {}, {{"IX_B", "BITMAP", "UNUSABLE"}});
  }

  void AnswerTable(const std::string& table, testing::ScriptedOci::Rows count,
                   testing::ScriptedOci::Rows key, testing::ScriptedOci::Rows indexes) {
    const std::string where = "where owner='S' and table_name='" + table + "'";
    script_.Answer("count(*) from  DBA_CONSTRAINTS  " + where, std::move(count));
    script_.Answer("status from  DBA_CONSTRAINTS  " + where, std::move(key));
    script_.Answer("I.owner='S' and I.table_name='" + table + "'", std::move(indexes));
  }

  CatalogueRead Refresh() {
    reason_.clear();
    return operations_.RefreshCatalogue(source_, heard_, reason_);
  }

  // How a refresh of a record with three tables goes: its result, the record then, the log.
  std::string Account() {
    source_ = DataSource();
    source_.name = "FROM";
    source_.tables.resize(3);
    const CatalogueRead result = Refresh();
    std::string text = result == CatalogueRead::Read ? "  read" : "  failed " + reason_;
    text += source_.needsave ? ", to be saved\n" : "\n";
    text += Lists();
    for (const std::string& line : TakeLog()) text += "  log  " + line + "\n";
    return text;
  }

  std::string reason_;
};

TEST_F(CatalogueReaderTest, ReadsWhatItCanAndTellsTheRest) {
  const std::string text = Accounts("refresh", [this] { return Account(); });
  // A connection that is gone ends it.
  script_.FailOn("StmtFetch2", "ORA-03113: end-of-file", 3113, 3);
  EXPECT_EQ(Refresh(), CatalogueRead::Failed);
  EXPECT_EQ(source_.primary_keys.size(), 1u) << "what was read before";
  TakeLog();
  script_.Answer(kTables, {});
  ExpectStored(text + "=== nothing there\n" + Account(), ACCOUNTS "/refresh.txt");
}

TEST_F(CatalogueReaderTest, CancelKeepsTheRecordAndProgressIsPaced) {
  heard_.allowed = 0;
  source_.tables.resize(3);
  EXPECT_EQ(Refresh(), CatalogueRead::Cancelled);
  EXPECT_EQ(source_.tables.size(), 3u);
  EXPECT_TRUE(script_.TakeExecuted().empty());
  EXPECT_EQ(heard_.progress, Lines{"read the list of tables 0/0"});
  heard_ = {};
  testing::ScriptedOci::Rows tables(3000, {"S", "B", "U", "1"});
  tables.push_back({"S", std::string(121, 'T'), "U", "1"});
  script_.Answer(kTables, tables);
  EXPECT_EQ(Refresh(), CatalogueRead::Read);
  EXPECT_LT(heard_.progress.size(), 1000u);
  EXPECT_EQ(source_.tables.size(), 3000u);
  EXPECT_TRUE(TakeLog()[2].starts_with("! FROM: table beginning with S.TTT"));
}

TEST(Version, IsTheWordThatLooksLikeARelease) {
  const std::pair<Lines, const char*> rows[] = {
      {{"Oracle9i Enterprise Edition Release 9.2.0.1.0 - Production", "CORE 9.2.0.1.1"},
       "9.2.0.1.0"},
      {{"", "  Release 10.2.0.4, 64bit"}, "10.2.0.4"},
      {{"Release 11 - 12.x ... ."}, ""},
      {{}, ""}};
  for (const auto& [banner, version] : rows) EXPECT_EQ(VersionFromBanner(banner), version);
}

}  // namespace
}  // namespace quillmere
