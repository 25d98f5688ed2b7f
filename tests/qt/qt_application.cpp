// One QApplication for the whole suite, on the offscreen platform, made before the first test
// and kept to the end of the process (Qt wants one per process).
#include <gtest/gtest.h>

#include <QApplication>

namespace {

class QtEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    // Never a window on the developer's display, whatever DISPLAY says.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "qt_tests";
    static char* argv[] = {name, nullptr};
    static QApplication* app = new QApplication(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    (void)app;
  }
};

const auto* const kEnvironment = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
