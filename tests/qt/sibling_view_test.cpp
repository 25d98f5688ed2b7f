// The Log page in its Qt window with Atlasine played on the in-process bus: the operator types a
// callsign and Enter, and the entity and zones are Atlasine's answer, not the local lookup's;
// the caption lists Atlasine.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <memory>
#include <string>

#include "interop/fake_sibling.h"
#include "qt/qt_program_test.h"

namespace vellumar::qt {
namespace {

class SiblingViewTest : public test::QtProgramTest {
 protected:
  void TearDown() override {
    test::QtProgramTest::TearDown();
    atlasine_.reset();
  }
  QWidget* window() { return views_->main.window(); }
  QLineEdit* Box(int i) {
    auto* w = window()->findChild<QLineEdit*>(QString::fromStdString("Fieldbox(" + std::to_string(i) + ")"));
    EXPECT_NE(w, nullptr) << i;
    return w;
  }
  std::string Text(int i) { return Box(i)->text().toStdString(); }

  std::unique_ptr<vellumar::test::FakeSibling> atlasine_;
};

TEST_F(SiblingViewTest, AtlasinesAnswerFillsThePanelInPlaceOfTheLocalLookup) {
  atlasine_ = std::make_unique<vellumar::test::FakeSibling>(bus_, loop_, "Atlasine");
  ASSERT_TRUE(atlasine_->Start());
  // Unlike the local lookup of K1XYZ (291, NA, CQ 5, ITU 8).
  vellumar::test::PlayAtlasine(*atlasine_, {{"K1XYZ", {"KH6", "110", "OC", "31", "61"}}});
  SeedReturningOperator();
  StartProgram();
  window()->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  for (int i = 0; i < 100 && app_->main.InitTimer.Enabled(); ++i) QTest::qWait(20);
  EXPECT_TRUE(window()->windowTitle().contains(QStringLiteral("[AT]")))
      << window()->windowTitle().toStdString();

  QTest::keyClick(window(), Qt::Key_N, Qt::AltModifier);
  QTest::qWait(250);
  ASSERT_EQ(QApplication::focusWidget(), Box(1));
  QTest::keyClicks(Box(1), QStringLiteral("k1xyz"));
  QTest::keyClick(Box(1), Qt::Key_Return);
  EXPECT_EQ(atlasine_->Commands("DDEServer").back(), "003lookupK1XYZ");
  EXPECT_EQ(Text(3), "110");
  EXPECT_EQ(Text(22), "OC");
  EXPECT_EQ(Text(24), "31");
  EXPECT_EQ(Text(23), "61");
}

}  // namespace
}  // namespace vellumar::qt
