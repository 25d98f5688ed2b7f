#pragma once
// The main window: TabbedDialog's six pages. The Log page holds, top to bottom, the QSO panel
// (QSOFrame and the four LogFrame panels with the field slots), LogGrid, the foot row (SortFrame,
// FilterFrame, the LogPosition commands, the panel switches) and the command row.
#include <initializer_list>
#include <vector>

#include <QMainWindow>
#include <QTabWidget>
#include <QVBoxLayout>

#include "logpage/vellum_main.h"
#include "qt/form_view.h"

namespace vellumar::qt {

class VellumMainView : public FormView {
 public:
  explicit VellumMainView(VellumMain& form);

  QMainWindow* mainWindow() const { return static_cast<QMainWindow*>(window()); }
  QTabWidget* tabs() const { return tabs_; }

 private:
  QWidget* BuildLogPage(QWidget* page);
  void BuildGridPage(QWidget* page, ui::Grid& grid, std::initializer_list<ui::Control*> commands,
                     ui::Control& help);
  void AddCommandRow(QBoxLayout* layout, std::initializer_list<ui::Control*> left,
                     std::initializer_list<ui::Control*> right, QWidget* page);
  // A value of a tab's progress frame and the caption the view shows before it.
  struct Labelled {
    const char* caption;
    ui::Control* control;
  };
  // When a tab's run began and ended.
  struct RunTimes {
    ui::Control& started;
    ui::Control& completed;
  };
  // Returns the progress frame's layout, for what a tab shows below its values.
  QVBoxLayout* BuildTransferPage(QWidget* page, const std::vector<QWidget*>& options,
                                 std::initializer_list<ui::Control*> left,
                                 std::initializer_list<ui::Control*> right,
                                 ui::Control& progressFrame, RunTimes times,
                                 std::initializer_list<Labelled> counts);
  // The Check Progress tab: its grid, the bar of a recompute under it, and its commands.
  void BuildProgressPage(QWidget* page);
  void BuildQTHPage(QWidget* page);
  void BuildQSLPage(QWidget* page);
  void BuildImportPage(QWidget* page);
  void BuildExportPage(QWidget* page);
  QWidget* FieldPanel(ui::Control& frame, const std::vector<int>& fields, int pairsPerRow,
                      QWidget* parent);
  VellumMain& main_;
  QTabWidget* tabs_ = nullptr;
};

}  // namespace vellumar::qt
