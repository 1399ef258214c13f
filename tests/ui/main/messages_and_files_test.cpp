// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <fstream>

#include "support/hand_clock.h"
#include "support/temp_folder.h"
#include "ui/main/message_list_model.h"
#include "ui/main/shared_files.h"

namespace quillmere {
namespace {

struct Messages : ::testing::Test {
  Messages() : application(argc, &argv) {}

  std::string Text(const MessageListModel& model, int row) const {
    return model.index(row).data().toString().toStdString();
  }

  int argc = 1;
  char name[5] = "test";
  char* argv = name;
  QCoreApplication application;
  TempFolder folder;
  HandClock clock;
  Settings settings;
  MessageLog log{folder.Files(), folder.Path(), clock, settings};
};

TEST_F(Messages, GoAlongWithTheLog) {
  log.Add("before the list", false);
  MessageListModel model(log);
  const QAbstractItemModelTester tester(&model);
  const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
  log.Add("two\nlines", true);
  ASSERT_EQ(model.rowCount(), 2);
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(Text(model, 0), "20260131 23:59:07 before the list");
  EXPECT_EQ(Text(model, 1), "20260131 23:59:07 two lines");
  EXPECT_EQ(model.FullText(1).toStdString(), "20260131 23:59:07 two\nlines");
}

TEST_F(Messages, ThatComeInAFloodAreShownTogether) {
  MessageListModel model(log);
  const QAbstractItemModelTester tester(&model);
  const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
  for (int i = 0; i < 100; ++i) log.Add(std::to_string(i), false);
  EXPECT_GE(model.rowCount(), 1);
  QElapsedTimer limit;
  limit.start();
  while (model.rowCount() < 100) {
    ASSERT_LT(limit.elapsed(), 30'000);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
  }
  EXPECT_LT(inserted.count(), 100);
  EXPECT_EQ(Text(model, 99), "20260131 23:59:07 99");
}

TEST_F(Messages, StartAnewWithTheLog) {
  settings.message_limit = 2;
  MessageListModel model(log);
  const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
  for (const char* text : {"1", "2", "3", "4"}) log.Add(text, false);
  EXPECT_EQ(resets.count(), 1);
  ASSERT_EQ(model.rowCount(), 2);
  EXPECT_EQ(Text(model, 0), "20260131 23:59:07 3");
  EXPECT_EQ(Text(model, 1), "20260131 23:59:07 4");
}

TEST_F(Messages, LogOutlivesItsList) {
  { const MessageListModel model(log); }
  EXPECT_TRUE(log.Add("nobody looks", false));
}

TEST(SharedFiles, AreLookedForInThreePlacesInTurn) {
  const TempFolder folder;
  const std::filesystem::path work = folder.Path() / "work";
  const std::filesystem::path bin = folder.Path() / "usr" / "bin";
  std::string tried;
  EXPECT_TRUE(FindSharedFile(folder.Files(), "HTML/index.html", work, bin, tried).empty());
  const std::filesystem::path places[] = {folder.Path() / "usr/share/quillmere", bin, work};
  for (const std::filesystem::path& place : places) {
    EXPECT_NE(tried.find((place / "HTML").string()), std::string::npos) << tried;
    std::filesystem::create_directories(place / "HTML");
    std::ofstream(place / "HTML" / "index.html") << "text";
    std::string ignored;
    EXPECT_EQ(FindSharedFile(folder.Files(), "HTML/index.html", work, bin, ignored),
              place / "HTML/index.html");
  }
}

}  // namespace
}  // namespace quillmere
