#pragma once
// The configuration window: SetupTab's ten pages, each a form of the options it holds.
#include <QFormLayout>
#include <QTabWidget>
#include <vector>

#include "config/vellum_setup.h"
#include "qt/form_view.h"

namespace vellumar::qt {

class VellumSetupView : public FormView {
 public:
  explicit VellumSetupView(VellumSetup& form);

  QTabWidget* tabs() const { return tabs_; }

 private:
  void BuildGeneral(QWidget* page);
  void BuildLog(QWidget* page);
  void BuildAwards(QWidget* page);
  void BuildQSLCards(QWidget* page);
  void BuildQSLLabels(QWidget* page);
  void BuildEQSL(QWidget* page);
  void BuildCallbook(QWidget* page);
  void BuildPrinter(QWidget* page);
  void BuildEnvelopes(QWidget* page);
  void BuildAddressLabels(QWidget* page);
  // One size of labels: its top offset, column offsets and labels per column.
  struct LabelBoxes {
    const char* title;
    ui::TextBox* top;
    std::vector<ui::TextBox*> columns;
    ui::TextBox* perColumn;
  };
  void BuildLabelSizes(QWidget* page, const LabelBoxes& narrow, const LabelBoxes& wide);
  // A labelled row of a page's form.
  void AddRow(QFormLayout* form, const char* label, ui::Control& control, QWidget* parent);
  // A row of check boxes (a control array's entries that are shown).
  QWidget* CheckRow(ui::ControlArray<ui::CheckBox>& array, int first, int last, int perRow,
                    QWidget* parent);
  void AddHelp(QBoxLayout* layout, int index, QWidget* parent);
  VellumSetup& setup_;
  QTabWidget* tabs_ = nullptr;
};

}  // namespace vellumar::qt
