// SPDX-License-Identifier: MIT
// The main thread is the user interface, the tests run beside it. On a failure the screen is saved
// as failures/<test>.png in the current folder, and a fatal one ends the test wherever it happens,
// in a helper too.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QThread>
#include <atomic>
#include <thread>

namespace {

class OnFailure final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& test) override {
    file_ = QString("failures/%1.%2.png").arg(test.test_suite_name(), test.name());
  }

  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (!result.failed()) return;
    const bool here = QThread::currentThread() == qApp->thread();
    QMetaObject::invokeMethod(
        qApp, [this] { SavePicture(); },
        here ? Qt::DirectConnection : Qt::BlockingQueuedConnection);
    if (result.type() == testing::TestPartResult::kFatalFailure) {
      throw testing::AssertionException(result);
    }
  }

  void SavePicture() const {
    QDir().mkpath("failures");
    QGuiApplication::primaryScreen()->grabWindow(0).save(file_);
  }

  QString file_;
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
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
  });
  // The program under test leaves the event loop when it ends; the next test needs it again.
  while (!done) QApplication::exec();
  tests.join();
  return status;
}
