#include "config/tooltips.h"

#include <algorithm>

#include "config/setting_keys.h"
#include "frame/version.h"
#include "platform/vb/variant.h"

namespace vellumar {
namespace {


}  // namespace

bool TooltipTable::InitializeTooltips() {
  bool show = false;
  WithFailureTail(errorLog_, "Common.InitializeTooltips", [&] {
    const std::vector<ui::Form*> forms = forms_();
    formCount_ = static_cast<int>(forms.size());
    maxControls_ = 0;
    for (const ui::Form* form : forms) {
      maxControls_ = std::max(maxControls_, static_cast<int>(form->Controls().size()));
    }
    saved_.assign(static_cast<size_t>(formCount_),
                  std::vector<std::string>(static_cast<size_t>(maxControls_)));
    SaveTooltips();
    show = vb::Variant(
               settings_.GetSetting(kApplicationTitle, setting::kShowToolTips.section,
                                    setting::kShowToolTips.key, "True"))
               .ToBool();
  });
  return show;
}

void TooltipTable::SaveTooltips() {
  const std::vector<ui::Form*> forms = forms_();
  for (size_t f = 0; f < forms.size() && f < saved_.size(); ++f) {
    const auto& controls = forms[f]->Controls();
    for (size_t c = 0; c < controls.size() && c < saved_[f].size(); ++c) {
      saved_[f][c] = controls[c]->ToolTipText();
    }
  }
}

void TooltipTable::ClearTooltips() {
  for (ui::Form* form : forms_()) {
    for (ui::Control* control : form->Controls()) control->SetToolTipText("");
  }
}

void TooltipTable::RestoreTooltips() {
  const std::vector<ui::Form*> forms = forms_();
  for (size_t f = 0; f < forms.size() && f < saved_.size(); ++f) {
    const auto& controls = forms[f]->Controls();
    for (size_t c = 0; c < controls.size() && c < saved_[f].size(); ++c) {
      controls[c]->SetToolTipText(saved_[f][c]);
    }
  }
}

void TooltipTable::SaveTooltipSetting(bool value) {
  settings_.SaveSetting(kApplicationTitle, setting::kShowToolTips.section,
                                    setting::kShowToolTips.key,
                        value ? "True" : "False");
}

}  // namespace vellumar
