#pragma once
// The windows of the whole program: one view per form of the application, the main window's
// close going through the program's unload order.
#include <memory>

#include "program/application.h"
#include "qt/dxcc_summary_view.h"
#include "qt/side_form_views.h"
#include "qt/vellum_main_view.h"
#include "qt/vellum_setup_view.h"

namespace vellumar::qt {

class ProgramViews {
 public:
  explicit ProgramViews(Application& app);

  VellumMainView main;
  VellumSetupView setup;
  CaptureView capture;
  AdvancedFilterView advancedFilter;
  CardPageView cardPage;
  AddressEditorView addressEditor;
  DXCCSummaryView dxccSummary;
};

}  // namespace vellumar::qt
