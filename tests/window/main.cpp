// SPDX-License-Identifier: MIT
// The main thread is the user interface, the tests run beside it. On a failure the screen is saved
// as failures/<test>.png in the current folder, and a fatal one ends the test wherever it happens,
// in a helper too.
#include <gtest/gtest.h>

#include <QApplication>
#include <atomic>
#include <filesystem>
#include <iostream>
#include <thread>

#include "window/driver.h"

namespace {

class OnFailure final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& test) override {
    test_ = std::string(test.test_suite_name()) + "." + test.name();
  }

  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (!result.failed()) return;
    SavePicture();
    if (result.type() == testing::TestPartResult::kFatalFailure) {
      throw testing::AssertionException(result);
    }
  }

  void SavePicture() const {
    const quillmere::window::XDisplay screen;
    if (!screen.Open()) return;
    std::error_code code;
    std::filesystem::create_directories("failures", code);
    const std::string file = "failures/" + test_ + ".png";
    if (screen.Picture().save(QString::fromStdString(file)))
      std::cerr << "picture: " << file << "\n";
  }

  std::string test_;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new OnFailure);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  int status = 1;
  std::atomic<bool> done = false;
  std::thread tests([&] {
    status = RUN_ALL_TESTS();
    done = true;
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                              Qt::QueuedConnection);
  });
  // The program under test leaves the event loop when it ends; the next test needs it again.
  while (!done) QApplication::exec();
  tests.join();
  return status;
}
