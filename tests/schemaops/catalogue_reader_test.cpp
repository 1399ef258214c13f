#include "schemaops/schemaops_fixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kTables =
    "select owner, table_name,  NVL(tablespace_name,chr(0)), NVL(num_rows,0)  from dba_all_tables  "
    "where owner NOT IN ('SYS', 'SYSTEM') order by owner, table_name";
const std::string kConnected = "connect to database: FROM successed, when refresh.";

class CatalogueReaderTest : public SchemaOpsTest {
 protected:
  void SetUp() override {
    script_.Answer(kTables, {{"S", "A", "USERS", "7"}, {"S", "B", std::string(1, '\0'), "0"}});
    AnswerTable("A", {{"1"}}, {{"PK_A", "ENABLED"}}, {{"IX_A", "NORMAL", "VALID"}});
    AnswerTable("B", {{"0"}}, {}, {{"IX_B", "BITMAP", "UNUSABLE"}});
    source_.tables.resize(3);
    source_.indexes.resize(4);
  }

  void AnswerTable(const std::string& table, testing::ScriptedOci::Rows count,
                   testing::ScriptedOci::Rows key, testing::ScriptedOci::Rows indexes) {
    const std::string where = "owner='S' and table_name='" + table + "'";
    script_.Answer(
        "select count(*) from  DBA_CONSTRAINTS  where " + where + " and constraint_type='P'",
        std::move(count));
    script_.Answer("select constraint_name, status from  DBA_CONSTRAINTS  where " + where +
                       " and  constraint_type='P' ",
                   std::move(key));
    script_.Answer(
        "select I.index_name, I.index_type, I.status from  DBA_INDEXES  I where "
        "I.owner='S' and I.table_name='" +
            table +
            "' AND NOT EXISTS (SELECT 1 FROM SYS.DBA_CONSTRAINTS C WHERE "
            "C.CONSTRAINT_NAME=I.INDEX_NAME AND C.TABLE_NAME=I.TABLE_NAME AND "
            "C.OWNER=I.OWNER AND C.CONSTRAINT_TYPE IN ('P','U')  AND "
            "I.UNIQUENESS='UNIQUE') ",
        std::move(indexes));
  }

  CatalogueRead Refresh() {
    reason_.clear();
    return operations_.RefreshCatalogue(source_, heard_, reason_);
  }

  // What the record holds: "A+PK_A" and so on.
  Lines Record() const {
    Lines lines;
    const auto add = [&](std::initializer_list<std::string_view> texts) {
      lines.emplace_back();
      for (const std::string_view text : texts) lines.back().append(text).append(" ");
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
    return lines;
  }

  std::string reason_;
};

TEST_F(CatalogueReaderTest, ReadsTablesKeysAndIndexes) {
  EXPECT_EQ(Refresh(), CatalogueRead::Read) << reason_;
  EXPECT_THAT(Record(), ElementsAre("S A USERS 7 ", "S B  0 ", "S A PK_A ENABLED ",
                                    "S A S IX_A NORMAL VALID ", "S B S IX_B BITMAP UNUSABLE "));
  EXPECT_TRUE(source_.needsave);
  EXPECT_EQ(TakeLog(), Lines{kConnected});

  script_.Answer(kTables, {});
  source_.needsave = false;
  EXPECT_EQ(Refresh(), CatalogueRead::Read);
  EXPECT_THAT(Record(), IsEmpty());
  EXPECT_TRUE(source_.needsave);
}

TEST_F(CatalogueReaderTest, AFailedTableIsLoggedAndTheNextIsRead) {
  struct Case {
    std::string failing;
    std::string line;
    std::size_t keys;
  };
  for (const Case& c : std::vector<Case>{
           {"count(*) from  DBA_CONSTRAINTS", "check if has key of  A failed. Reason: ", 0},
           {"select constraint_name", "get key of table A failed. Reason: ", 0},
           {"select I.index_name", "get index of table A failed. Reason: ", 1}}) {
    SCOPED_TRACE(c.line);
    script_.FailOn(c.failing, "ORA-00942: no such view", 942, 1);
    EXPECT_EQ(Refresh(), CatalogueRead::Read);
    const Lines log = TakeLog();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_THAT(log[1], ::testing::StartsWith("! " + c.line + "OCIStmtExecute"));
    EXPECT_EQ(source_.tables.size(), 2u);
    EXPECT_EQ(source_.primary_keys.size(), c.keys);
    EXPECT_EQ(source_.indexes.size(), 1u);
  }
}

TEST_F(CatalogueReaderTest, FailuresLeaveWhatWasReadBefore) {
  script_.FailOn("SessionBegin", "ORA-01017: denied", 1017);
  EXPECT_EQ(Refresh(), CatalogueRead::Failed);
  EXPECT_THAT(TakeLog(), ElementsAre("! Can't not connect to database: FROM",
                                     "! OCISessionBegin : ORA-01017: denied"));
  EXPECT_EQ(source_.tables.size(), 3u) << "nothing was emptied";

  script_.FailOn("StmtFetch2", "ORA-03113: end-of-file", 3113, 3);  // after the table list
  EXPECT_EQ(Refresh(), CatalogueRead::Failed);
  EXPECT_THAT(TakeLog(),
              ElementsAre(kConnected,
                          "! get index of table A failed. Reason: OCIStmtFetch2 : ORA-03113: "
                          "end-of-file"));
  EXPECT_EQ(source_.primary_keys.size(), 1u);

  script_.FailOn("StmtFetch2", "ORA-00942: no such view", 942, 1);
  EXPECT_EQ(Refresh(), CatalogueRead::Failed);
  EXPECT_EQ(reason_,
            "Can't not get table info list,Reason: OCIStmtFetch2 : ORA-00942: no such view");
  EXPECT_THAT(TakeLog(), ElementsAre(kConnected, "! " + reason_));
  EXPECT_THAT(Record(), IsEmpty());
  EXPECT_FALSE(source_.needsave);
}

TEST_F(CatalogueReaderTest, CancelKeepsTheRecordAndProgressIsPaced) {
  heard_.allowed = 0;
  EXPECT_EQ(Refresh(), CatalogueRead::Cancelled);
  EXPECT_EQ(source_.tables.size(), 3u);
  EXPECT_THAT(script_.TakeExecuted(), IsEmpty());
  EXPECT_THAT(heard_.progress, ElementsAre("read the list of tables 0/0"));

  heard_ = {};
  testing::ScriptedOci::Rows tables;
  for (int i = 0; i < 3000; ++i) tables.push_back({"S", "B", "U", "1"});
  tables.push_back({"S", std::string(121, 'T'), "U", "1"});
  script_.Answer(kTables, tables);
  EXPECT_EQ(Refresh(), CatalogueRead::Read);
  EXPECT_LT(heard_.progress.size(), 1000u);
  EXPECT_EQ(source_.tables.size(), 3000u);
  EXPECT_THAT(TakeLog()[2], ::testing::StartsWith("! table beginning with S.TTT"));
}

TEST(Version, IsTheWordThatLooksLikeARelease) {
  struct Case {
    Lines banner;
    const char* version;
  };
  for (const Case& c : std::vector<Case>{
           {{"Oracle9i Enterprise Edition Release 9.2.0.1.0 - Production", "CORE 9.2.0.1.1"},
            "9.2.0.1.0"},
           {{"Oracle Database 19c Enterprise Edition Release 19.0.0.0.0 - Prod"}, "19.0.0.0.0"},
           {{"", "  Release 10.2.0.4, 64bit"}, "10.2.0.4"},
           {{"Release 11 - 12.x ... ."}, ""},
           {{}, ""}}) {
    EXPECT_EQ(VersionFromBanner(c.banner), c.version);
  }
}

}  // namespace
}  // namespace quillmere
