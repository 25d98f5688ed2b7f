#include "program/application.h"

#include "awards/progress_init.h"
#include "frame/version.h"
#include "station/installed_files.h"

namespace vellumar {

Application::Application(ApplicationPlatform platform)
    : loop(platform.loop),
      desktop(platform.common.desktop),
      settings(platform.settingsRoot),
      common(std::move(platform.common)),
      stationServices{
          .programFolder = common.ApplicationDirectory(),
          .GetSetting =
              [this](const std::string& application, const std::string& section,
                     const std::string& key, const std::string& defaultValue) {
                return settings.GetSetting(application, section, key, defaultValue);
              },
          .WriteErrorLog = [this](const std::string& text) { common.WriteErrorLog(text); },
          .ReportError = [this](int number,
                                const std::string& where) { common.ReportError(number, where); },
          .desktop = &desktop,
      },
      dxcc(stationServices, lookupSlots),
      bands([this](const std::string& text) { common.WriteErrorLog(text); },
            [this](int number, const std::string& where) { common.ReportError(number, where); }),
      logSchema(common.errorLog(),
                [this](db::Database& log) {
                  InitializeProgressTableFromDatabase(log, dxcc.GetDXCCRecordset(),
                                                      module.ProgressRecordset,
                                                      [this](int number, const std::string& where) {
                                                        common.ReportError(number, where);
                                                      });
                }),
      qslQueue(desktop, common.errorLog()),
      setupForm(std::make_unique<VellumSetup>(ConfigServices{
          .loop = loop,
          .desktop = desktop,
          .settings = settings,
          .common = common,
          .logSchema = logSchema,
          .loadedForms = [this] { return logPage.LoadedForms(); },
      })),
      logPage(LogPageServices{
          .loop = loop,
          .desktop = desktop,
          .settings = settings,
          .common = common,
          .lookupSlots = lookupSlots,
          .dxcc = dxcc,
          .bands = bands,
          .logSchema = logSchema,
          .qslQueue = qslQueue,
          .setup = *setupForm,
          .endProcess = [this](int code) { EndProcess(code); },
          .linkEndpoint = platform.link,
      }),
      module(logPage.module),
      main(logPage.main),
      capture(logPage.capture),
      cardPage(logPage.cardPage),
      advancedFilter(logPage.advancedFilter),
      addressEditor(logPage.addressEditor),
      installedData_(std::move(platform.installedData)),
      exitProcess_(std::move(platform.exitProcess)) {
  common.errorLog().SetUpdateCaption([this] { main.UpdateCaption(); });
}

Application::~Application() = default;

void Application::Start() {
  // Files installed with the program are the user's own once copied: they are only put in
  // place where missing.
  CopyInstalledFilesWhenMissing(installedData_, common.ApplicationDirectory(),
                                StationInstalledFiles());
  // The help pages, which InvokeHelp opens from the data folder's Help.
  CopyInstalledFilesWhenMissing(installedData_, common.ApplicationDirectory(),
                                InstalledFolderFiles(installedData_, "Help"));
  try {
    main.Show();
  } catch (const ProgramTermination&) {
    EndProcess(1);
  }
}

bool Application::CloseMainWindow(int unloadMode) { return main.Unload(unloadMode); }

void Application::EndProcess(int code) {
  ended_ = true;
  if (exitProcess_) exitProcess_(code);
}

}  // namespace vellumar
