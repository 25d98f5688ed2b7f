#pragma once
// The whole program in Qt windows for a test: built with the Qt event loop on the offscreen
// platform, a virtual clock and a scripted desktop, over a temporary data folder and settings,
// with the DXCC database the build generated.
#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "frame/settings_store.h"
#include "platform/link/in_process_bus.h"
#include "platform/vb/date_locale.h"
#include "program/application.h"
#include "qt/program_views.h"
#include "qt/qt_event_loop.h"
#include "support/frame_harness.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::qt::test {

class QtProgramTest : public ::testing::Test {
 protected:
  // Builds the program and its windows, and starts it.
  void StartProgram() {
    app_.emplace(ApplicationPlatform{
        .common = vellumar::test::HarnessContext(dir_.Join("data"), clock_, desktop_),
        .loop = loop_,
        .settingsRoot = dir_.Join("config"),
        .installedData = std::string(VELLUMAR_BINARY_DIR) + "/data",
        .exitProcess = [this](int code) { exitCode_ = code; },
        .link = programEndpoint_.get(),
    });
    views_.emplace(*app_);
    app_->Start();
  }
  // The settings of a program that has run before: a callsign, the callbook switched off.
  void SeedReturningOperator() {
    settings_.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
    settings_.SaveSetting("Vellumar", "RAC", "RACEnabled", "0");
  }
  void TearDown() override {
    // The windows are hidden before they go, so that no focus or activation of theirs is left
    // to the tests after this one.
    for (QWidget* w : QApplication::topLevelWidgets()) w->hide();
    QCoreApplication::processEvents();
    views_.reset();
    app_.reset();
  }

  vellumar::test::TempDir dir_;
  SettingsStore settings_{dir_.Join("config")};  // the files the program reads
  ui::VirtualClock clock_{ui::UtcTime{2024, 3, 15, 8, 30, 0, 0}};
  QtEventLoop loop_;
  vellumar::test::ScriptedDesktop desktop_;
  vb::ScopedDateLocale dateLocale_{vb::DateLocale{}};
  std::optional<int> exitCode_;
  // The bus the program and a test's siblings meet on; closed links arrive as events.
  link::InProcessBus bus_{[this](std::function<void()> work) { loop_.Post(std::move(work)); }};
  std::unique_ptr<link::LinkEndpoint> programEndpoint_ = bus_.Join();
  std::optional<Application> app_;
  std::optional<ProgramViews> views_;
};

}  // namespace vellumar::qt::test
