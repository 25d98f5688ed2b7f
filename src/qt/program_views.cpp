#include "qt/program_views.h"

namespace vellumar::qt {

ProgramViews::ProgramViews(Application& app)
    : main(app.main),
      setup(app.setup()),
      capture(app.capture),
      advancedFilter(app.advancedFilter),
      cardPage(app.cardPage),
      addressEditor(app.addressEditor),
      dxccSummary(app.logPage.dxccSummary) {
  // The window manager's close of the main window is the operator's ending of the program.
  main.formBinder().CloseRequested = [&app](int unloadMode) { app.CloseMainWindow(unloadMode); };
}

}  // namespace vellumar::qt
