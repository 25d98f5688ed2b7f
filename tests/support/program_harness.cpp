#include "support/program_harness.h"

#include <filesystem>

#include "support/test_dxcc_database.h"

namespace vellumar::test {

ProgramHarness::ProgramHarness(DXCC dxcc) : loop(&clock), settings(dir.Join("config")) {
  if (dxcc == DXCC::kBuilt) {
    installed_ = std::string(VELLUMAR_BINARY_DIR) + "/data";
    return;
  }
  installed_ = dir.Join("installed");
  std::filesystem::create_directories(installed_);
  std::filesystem::copy_file(std::string(VELLUMAR_SOURCE_DIR) + "/data/Bands.txt",
                             installed_ + "/Bands.txt");
  if (dxcc == DXCC::kNone) return;
  std::vector<TestDXCCRow> entities = {{"K", 291, "United States", std::nullopt},
                                       {"G", 223, "England", std::nullopt},
                                       {"VP2E", 12, "Anguilla", std::nullopt}};
  if (dxcc == DXCC::kSmallWithUncoded)
    entities.push_back({"4U1X", std::nullopt, "Uncoded Entity", std::nullopt});
  CreateTestDXCCDatabase(installed_ + "/DXCC.vdb", entities,
                         {{"K", "K", "K"}, {"G", "G", "G"}, {"VP2E", "VP2E", "VP2E"}},
                         {{"K", "NA", 5, 8}, {"G", "EU", 14, 27}, {"VP2E", "NA", 8, 11}});
}

Application& ProgramHarness::Build() {
  app.emplace(ApplicationPlatform{
      .common = HarnessContext(DataPath(), clock, desktop),
      .loop = loop,
      .settingsRoot = dir.Join("config"),
      .installedData = installed_,
      .exitProcess = [this](int code) { exitCode = code; },
      .link = programEndpoint.get(),
  });
  return *app;
}

Application& ProgramHarness::Start() {
  if (!app) Build();
  app->Start();
  return *app;
}

void ProgramHarness::SeedReturningOperator(const std::string& callsign) {
  Seed("Configuration", "Callsign", callsign);
  Seed("RAC", "RACEnabled", "0");
}

}  // namespace vellumar::test
