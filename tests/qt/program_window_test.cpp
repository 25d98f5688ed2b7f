// The whole program in Qt windows: built with the Qt event loop on the offscreen platform and
// a scripted desktop, started, its main window found by the controls' names, and ended through
// the window manager's close.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <optional>

#include "config/vellum_setup.h"
#include "frame/common.h"
#include "platform/bound/data_control.h"
#include "platform/vb/date_locale.h"
#include "program/application.h"
#include "qt/binder_factory.h"
#include "qt/program_views.h"
#include "qt/qt_event_loop.h"
#include "qt/qt_program_test.h"
#include "support/frame_harness.h"
#include "support/program_harness.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::qt {
namespace {

class ProgramWindowTest : public test::QtProgramTest {
 protected:
  // The first run: the callsign is asked, and the callbook, enabled by default, is found missing.
  void FirstRun() {
    desktop_.ExpectInputBox("K1ABC")
        .WithPrompt(vellumar::test::kFirstRunPrompt)
        .WithTitle("Vellumar initialization");
    desktop_.ExpectMsgBox(vellumar::test::kCallbookMissing).WithTitle("Vellumar");
    StartProgram();
  }

  template <typename W>
  W* Find(const char* name) {
    return views_->main.window()->findChild<W*>(QString::fromUtf8(name));
  }
};

TEST_F(ProgramWindowTest, StartsShowsTheMainWindowAndEndsOnClose) {
  FirstRun();
  auto* window = qobject_cast<QMainWindow*>(views_->main.window());
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(window->objectName(), QStringLiteral("VellumMain"));
  EXPECT_EQ(window->windowTitle().toStdString(),
            "Vellumar " + Common::Version() + " - K1ABC.vdb : no QSOs");

  // The controls are there by name, showing their models.
  auto* tabs = Find<QTabWidget>("TabbedDialog");
  ASSERT_NE(tabs, nullptr);
  EXPECT_EQ(tabs->count(), 6);
  EXPECT_EQ(tabs->tabText(3), QStringLiteral("my QTHs"));
  auto* call = Find<QLineEdit>("Fieldbox(1)");
  ASSERT_NE(call, nullptr);
  EXPECT_FALSE(call->isEnabled());  // an empty log: nothing to edit yet
  auto* callLabel = Find<QLabel>("FieldLabel(1)");
  ASSERT_NE(callLabel, nullptr);
  EXPECT_EQ(callLabel->text(), QStringLiteral("call"));
  for (int i = 0; i < kFieldCount; ++i) {
    const std::string box = "Fieldbox(" + std::to_string(i) + ")";
    EXPECT_NE(Find<QLineEdit>(box.c_str()), nullptr) << box;
  }
  EXPECT_NE(Find<QTableView>("LogGrid"), nullptr);
  auto* filter = Find<QGroupBox>("FilterFrame");
  ASSERT_NE(filter, nullptr);
  EXPECT_TRUE(filter->title().startsWith(QStringLiteral("Filter: None")));
  auto* newCmd = Find<QPushButton>("NewCmd");
  ASSERT_NE(newCmd, nullptr);
  EXPECT_EQ(newCmd->text(), QStringLiteral("&New"));
  EXPECT_EQ(Find<QPushButton>("ConfirmCmd")->text(), QStringLiteral("Con&firm"));
  EXPECT_NE(Find<QCheckBox>("LogFrameSelect(3)"), nullptr);
  EXPECT_TRUE(views_->capture.window()->isVisible());

  // The window manager closes the main window: the program's unload order runs to its end.
  QCloseEvent close;
  QApplication::sendEvent(window, &close);
  EXPECT_TRUE(app_->Ended());
  EXPECT_EQ(exitCode_, 0);
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(views_->capture.window()->isVisible());
}

TEST_F(ProgramWindowTest, EveryControlOfEveryFormHasItsWidget) {
  FirstRun();
  for (const FormView* view : std::initializer_list<const FormView*>{
           &views_->main, &views_->setup, &views_->capture, &views_->advancedFilter,
           &views_->cardPage, &views_->addressEditor}) {
    for (const ui::Control* control : view->form().Controls()) {
      if (dynamic_cast<const ui::DataControl*>(control)) continue;  // shown by its grid
      QWidget* widget = view->WidgetOf(*control);
      ASSERT_NE(widget, nullptr) << view->form().Name() << "." << control->Name();
      EXPECT_EQ(widget->objectName(), ObjectNameOf(*control));
      EXPECT_EQ(widget->window(), view->window()) << control->Name();
    }
  }
}

TEST_F(ProgramWindowTest, ConfigLogCmdShowsTheConfigurationOnItsLogPage) {
  FirstRun();
  QWidget* setupWindow = views_->setup.window();
  EXPECT_FALSE(setupWindow->isVisible());
  auto* config = Find<QPushButton>("ConfigLogCmd");
  ASSERT_NE(config, nullptr);
  QTest::mouseClick(config, Qt::LeftButton);
  EXPECT_TRUE(setupWindow->isVisible());
  EXPECT_EQ(setupWindow->windowTitle(), QStringLiteral("Vellumar Configuration"));
  EXPECT_EQ(views_->setup.tabs()->currentIndex(), kLogPage);
  EXPECT_EQ(views_->setup.tabs()->count(), 10);
  auto* callsign = setupWindow->findChild<QLineEdit*>(QStringLiteral("MyCallsign"));
  ASSERT_NE(callsign, nullptr);
  EXPECT_EQ(callsign->text(), QStringLiteral("K1ABC"));
  // The operator's close of the configuration window hides it; the program goes on.
  setupWindow->close();
  EXPECT_FALSE(setupWindow->isVisible());
  EXPECT_TRUE(app_->setup().Loaded());
  EXPECT_FALSE(app_->Ended());
}

TEST_F(ProgramWindowTest, PanelSwitchHidesItsPanelThroughTheConfiguration) {
  FirstRun();
  auto* aux = Find<QGroupBox>("LogFrame(0)");
  auto* select = Find<QCheckBox>("LogFrameSelect(0)");
  ASSERT_NE(aux, nullptr);
  ASSERT_NE(select, nullptr);
  EXPECT_EQ(aux->title(), QStringLiteral("Aux"));
  EXPECT_TRUE(aux->isVisible());
  EXPECT_TRUE(select->isChecked());
  QTest::mouseClick(select, Qt::LeftButton);
  EXPECT_FALSE(aux->isVisible());
  EXPECT_FALSE(select->isChecked());
  EXPECT_EQ(app_->setup().LogFrameVisible(0).Value(), 0);
  auto* mirror =
      views_->setup.window()->findChild<QCheckBox*>(QStringLiteral("LogFrameVisible(0)"));
  ASSERT_NE(mirror, nullptr);
  EXPECT_FALSE(mirror->isChecked());
  QTest::mouseClick(select, Qt::LeftButton);
  EXPECT_TRUE(aux->isVisible());
}

TEST_F(ProgramWindowTest, TabChangeGoesThroughTheModel) {
  FirstRun();
  auto* tabs = Find<QTabWidget>("TabbedDialog");
  ASSERT_NE(tabs, nullptr);
  tabs->setCurrentIndex(2);  // as a click on the tab does
  EXPECT_EQ(app_->main.TabbedDialog.Tab(), 2);
  // While a command runs no tab can be left: the widget goes back with the model.
  app_->main.CommandBusy = true;
  tabs->setCurrentIndex(4);
  EXPECT_EQ(app_->main.TabbedDialog.Tab(), 2);
  EXPECT_EQ(tabs->currentIndex(), 2);
  app_->main.CommandBusy = false;
}

}  // namespace
}  // namespace vellumar::qt
