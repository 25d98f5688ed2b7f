#pragma once
// The main window: TabbedDialog's six pages. The Log page holds, top to bottom, the QSO panel
// (QSOFrame and the four LogFrame panels with the field slots), LogGrid, the foot row (SortFrame,
// FilterFrame, the LogPosition commands, the panel switches) and the command row.
#include <initializer_list>

#include <QMainWindow>
#include <QTabWidget>
#include <QVBoxLayout>

#include "logpage/vellum_main.h"
#include "qt/form_view.h"

class QGridLayout;

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
  void AddCommandRow(QVBoxLayout* layout, std::initializer_list<ui::Control*> commands,
                     ui::Control& help, QWidget* page);
  void BuildImportPage(QWidget* page);
  void BuildExportPage(QWidget* page);
  void AddLabelled(QGridLayout* grid, int row, const char* caption, ui::Control& value,
                   QWidget* parent);
  QWidget* FieldPanel(ui::Control& frame, const std::vector<int>& fields, int pairsPerRow,
                      QWidget* parent);
  VellumMain& main_;
  QTabWidget* tabs_ = nullptr;
};

}  // namespace vellumar::qt
