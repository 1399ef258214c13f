// SPDX-License-Identifier: MIT
// Tables that change while a job runs: what is asked, told, kept, and when the job is paused.
#include "engine/definition_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sim/engine_on_models.h"

namespace quillmere::sim {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Row = std::vector<std::string>;

Row Column(const char* owner, const char* table, const char* name, const char* type, int length) {
  return {owner, table, name, type, "", std::to_string(length), "0", "0", "Y", "0"};
}

struct DefinitionsTest : ::testing::Test {
  explicit DefinitionsTest(Follow follow = Follow::Commits) : on(Shape(), follow, 0) {
    on.source.dictionary.columns = {Column("SHOP", "ORDERS", "ID", "NUMBER", 22),
                                    Column("SHOP", "ITEMS", "NAME", "VARCHAR2", 20),
                                    Column("SHOP", "SECRET", "KEY", "RAW", 16)};
    on.destination.dictionary.columns = {Column("SHOP", "ORDERS", "ID", "NUMBER", 22),
                                         Column("COPY", "ITEMS", "NAME", "VARCHAR2", 20)};
    on.client.fault = [this](auto call, std::string_view sql) -> std::optional<ModelOci::Fault> {
      if (call != "StmtExecute") return std::nullopt;
      newest += sql.find("_objects where") != sql.npos ? 1 : 0;
      columns += sql.find("_tab_columns where") != sql.npos ? 1 : 0;
      if (refuse.empty() || sql.find(refuse) == sql.npos) return std::nullopt;
      return ModelOci::Fault{.code = 942, .connection_lost = false};
    };
    on.life->Run();
    on.Wait(20'000);
    on.life->Step();
  }
  static SourceShape Shape() {
    SourceShape shape{.seed = 1};
    shape.log = {.bytes = 60'000, .archived = true, .archives_kept = 1000};
    return shape;
  }
  void Change(ModelDictionary& of, Row row) {
    of.columns.push_back(std::move(row));
    of.changed.back() += 1;
  }
  // What was told of errors by some passes, and of tables that fit.
  std::vector<std::string> Passes() {
    newest = columns = 0;
    Life& life = *on.life;
    life.errors.clear();
    life.told.clear();
    for (int i = 0; i < 4; ++i) on.Wait(20'000), life.Step();
    std::vector<std::string> heard = life.errors;
    for (const std::string& text : life.told) {
      if (text.find("fit") != text.npos) heard.push_back(text);
    }
    return heard;
  }

  EngineOnModels on;
  int newest = 0, columns = 0;  // how often that was asked
  std::string refuse;
};

TEST_F(DefinitionsTest, AreComparedWhenTheyMovedAndToldOnce) {
  EXPECT_THAT(Passes(), IsEmpty());
  EXPECT_EQ(columns, 3) << "an owner at a time, on both sides";
  EXPECT_THAT(Passes(), IsEmpty());
  EXPECT_EQ(columns, 0);
  EXPECT_EQ(newest, 8) << "a question a pass and side";
  Change(on.source.dictionary, Column("SHOP", "SECRET", "NOTE", "VARCHAR2", 20));
  EXPECT_THAT(Passes(), IsEmpty()) << "not carried";
  Change(on.source.dictionary, Column("SHOP", "ORDERS", "NOTE", "VARCHAR2", 20));
  const std::string missing =
      "J: on DES SHOP.ORDERS has no column NOTE. To bring it up: alter table SHOP.ORDERS add (NOTE "
      "VARCHAR2(20));";
  EXPECT_THAT(Passes(), ElementsAre(missing));
  on.source.dictionary.changed.back() += 1;
  EXPECT_THAT(Passes(), IsEmpty()) << "compared again";
  on.Restart();
  on.life->Run();
  EXPECT_THAT(Passes(), IsEmpty()) << "after a restart";
  EXPECT_EQ(columns, 0);
  Change(on.destination.dictionary, Column("SHOP", "ORDERS", "NOTE", "VARCHAR2", 20));
  EXPECT_THAT(Passes(), ElementsAre("The tables on DES fit those of J again"));
  EXPECT_EQ(columns, 2) << "the source's are known";
  on.destination.dictionary.now = on.destination.dictionary.changed;
  EXPECT_THAT(Passes(), IsEmpty());
  EXPECT_EQ(columns, 8) << "it may change again in the same second";
}

TEST_F(DefinitionsTest, ThatDoNotFitPauseTheJobBeforeAnythingIsRefused) {
  on.settings.pause_on_definition = true;
  on.destination.dictionary.columns = {Column("COPY", "ITEMS", "NAME", "VARCHAR2", 10)};
  EXPECT_THAT(
      Passes(),
      ElementsAre("J: on DES SHOP.ORDERS is not there",
                  "J: on DES COPY.ITEMS NAME is VARCHAR2(10), narrower than VARCHAR2(20). To "
                  "bring it up: alter table COPY.ITEMS modify (NAME VARCHAR2(20));",
                  "J is paused, for its changes would be refused. Bring the tables up and "
                  "run it again"));
  EXPECT_EQ(on.life->State(), JobState::Paused);
  EXPECT_EQ(on.life->job.run.applied_count, 0);
  on.life->Run();
  EXPECT_THAT(Passes(), IsEmpty());
  EXPECT_GT(on.life->job.run.applied_count, 0) << "somebody wanted it";
}

TEST_F(DefinitionsTest, ThatCanNotBeReadAreToldOnceAndStopNothing) {
  for (const char* const query :
       {"dba_objects", "dba_tab_columns", "all_objects", "all_tab_columns"}) {
    refuse = query;
    on.source.dictionary.changed.back() += 1;
    const std::int32_t applied = on.life->job.run.applied_count;
    EXPECT_EQ(Passes().size(), 1U) << query;
    EXPECT_GT(on.life->job.run.applied_count, applied) << query;
    refuse.clear();
    EXPECT_THAT(Passes(), IsEmpty()) << query;
  }
}

struct DefinitionsByRowsTest : DefinitionsTest {
  DefinitionsByRowsTest() : DefinitionsTest(Follow::Rows) {}
};

TEST_F(DefinitionsByRowsTest, AreAskedForOnlyWhenThatIsWanted) {
  Passes();
  EXPECT_EQ(newest + columns, 0);
  on.settings.definitions_by_rows = true;
  Passes();
  EXPECT_EQ(columns, 3);
}

}  // namespace
}  // namespace quillmere::sim
