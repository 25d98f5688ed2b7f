#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "platform/vb/error.h"

namespace vellumar::test {
namespace {

const char* KindName(DesktopCallKind kind) {
  switch (kind) {
    case DesktopCallKind::kMsgBox:
      return "message box";
    case DesktopCallKind::kInputBox:
      return "input box";
    case DesktopCallKind::kOpenFile:
      return "open-file dialog";
    case DesktopCallKind::kSaveFile:
      return "save-file dialog";
    case DesktopCallKind::kShell:
      return "shell launch";
    case DesktopCallKind::kOpenWith:
      return "open-with chooser";
  }
  return "desktop call";
}

std::string Quote(const std::string& text) { return "\"" + text + "\""; }

std::string DescribeCall(const DesktopCall& call) {
  std::ostringstream out;
  out << KindName(call.kind);
  switch (call.kind) {
    case DesktopCallKind::kMsgBox:
      out << " " << Quote(call.prompt) << " (title " << Quote(call.title) << ", buttons "
          << call.buttons << ")";
      break;
    case DesktopCallKind::kInputBox:
      out << " " << Quote(call.prompt) << " (title " << Quote(call.title) << ")";
      break;
    case DesktopCallKind::kOpenFile:
    case DesktopCallKind::kSaveFile:
      out << " " << Quote(call.dialog.title) << " (filter " << Quote(call.dialog.filter)
          << ", folder " << Quote(call.dialog.initialDir) << ")";
      break;
    case DesktopCallKind::kShell:
      out << " " << Quote(call.operation) << " " << Quote(call.file) << " parameters "
          << Quote(call.parameters) << " directory " << Quote(call.directory) << " show "
          << call.show;
      break;
    case DesktopCallKind::kOpenWith:
      out << " " << Quote(call.file);
      break;
  }
  return out.str();
}

// The answer of an unscripted message box: the button that commits to the least.
int SafestAnswer(int buttons) {
  switch (buttons & ui::kMsgBoxButtonsMask) {
    case ui::vbOKOnly:
      return ui::vbOK;
    case ui::vbAbortRetryIgnore:
      return ui::vbAbort;
    case ui::vbYesNo:
      return ui::vbNo;
    default:
      return ui::vbCancel;
  }
}

// The text of a call that an expectation's text is matched against.
const std::string& MatchedText(const DesktopCall& call) {
  switch (call.kind) {
    case DesktopCallKind::kMsgBox:
    case DesktopCallKind::kInputBox:
      return call.prompt;
    case DesktopCallKind::kOpenFile:
    case DesktopCallKind::kSaveFile:
      return call.dialog.title;
    default:
      return call.file;
  }
}

template <class T>
void CheckField(const char* what, const std::optional<T>& expected, const T& actual,
                const DesktopCall& call) {
  if (expected && *expected != actual) {
    ADD_FAILURE() << KindName(call.kind) << " " << what << ": expected "
                  << ::testing::PrintToString(*expected) << ", got "
                  << ::testing::PrintToString(actual) << " in " << DescribeCall(call);
  }
}

}  // namespace

DesktopExpectation& DesktopExpectation::WithTitle(std::string title) {
  title_ = std::move(title);
  return *this;
}
DesktopExpectation& DesktopExpectation::WithButtons(int buttons) {
  buttons_ = buttons;
  return *this;
}
DesktopExpectation& DesktopExpectation::WithPrompt(std::string prompt) {
  text_ = std::move(prompt);
  return *this;
}
DesktopExpectation& DesktopExpectation::WithDirectory(std::string directory) {
  directory_ = std::move(directory);
  return *this;
}
DesktopExpectation& DesktopExpectation::WithShow(int show) {
  show_ = show;
  return *this;
}

DesktopExpectation& DesktopExpectation::Then(std::function<void()> action) {
  then_ = std::move(action);
  return *this;
}

std::string DesktopExpectation::Describe() const {
  std::string text = KindName(kind_);
  if (text_) text += (prefixOnly_ ? " starting with " : " ") + Quote(*text_);
  if (operation_) text += " operation " + Quote(*operation_);
  if (parameters_) text += " parameters " + Quote(*parameters_);
  return text;
}

ScriptedDesktop::~ScriptedDesktop() {
  for (const DesktopExpectation& left : script_) {
    ADD_FAILURE() << "expected " << left.Describe() << " never came";
  }
}

DesktopExpectation& ScriptedDesktop::Add(DesktopCallKind kind) {
  script_.emplace_back();
  script_.back().kind_ = kind;
  return script_.back();
}

DesktopExpectation& ScriptedDesktop::ExpectMsgBox(std::string text, int answer) {
  DesktopExpectation& e = Add(DesktopCallKind::kMsgBox);
  e.text_ = std::move(text);
  e.answer_ = answer;
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectMsgBoxStartingWith(std::string prefix, int answer) {
  DesktopExpectation& e = ExpectMsgBox(std::move(prefix), answer);
  e.prefixOnly_ = true;
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectInputBox(std::string answer) {
  DesktopExpectation& e = Add(DesktopCallKind::kInputBox);
  e.answerText_ = std::move(answer);
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectOpenFile(std::string path) {
  DesktopExpectation& e = Add(DesktopCallKind::kOpenFile);
  e.answerText_ = std::move(path);
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectOpenFileCancel() {
  DesktopExpectation& e = Add(DesktopCallKind::kOpenFile);
  e.cancel_ = true;
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectSaveFile(std::string path) {
  DesktopExpectation& e = Add(DesktopCallKind::kSaveFile);
  e.answerText_ = std::move(path);
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectSaveFileCancel() {
  DesktopExpectation& e = Add(DesktopCallKind::kSaveFile);
  e.cancel_ = true;
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectShell(std::string operation, std::string file,
                                                 std::string parameters, int result) {
  DesktopExpectation& e = Add(DesktopCallKind::kShell);
  e.operation_ = std::move(operation);
  e.text_ = std::move(file);
  e.parameters_ = std::move(parameters);
  e.answer_ = result;
  return e;
}

DesktopExpectation& ScriptedDesktop::ExpectOpenWith(std::string file) {
  DesktopExpectation& e = Add(DesktopCallKind::kOpenWith);
  e.text_ = std::move(file);
  return e;
}

std::vector<std::string> ScriptedDesktop::MessageBoxTexts() const {
  std::vector<std::string> texts;
  for (const DesktopCall& call : calls_) {
    if (call.kind == DesktopCallKind::kMsgBox) texts.push_back(call.prompt);
  }
  return texts;
}

std::optional<DesktopExpectation> ScriptedDesktop::Take(const DesktopCall& call) {
  calls_.push_back(call);
  if (call.kind == DesktopCallKind::kMsgBox && script_.empty() &&
      std::find(tolerated_.begin(), tolerated_.end(), call.prompt) != tolerated_.end()) {
    return std::nullopt;
  }
  if (script_.empty() || script_.front().kind_ != call.kind) {
    ADD_FAILURE() << "unexpected " << DescribeCall(call)
                  << (script_.empty() ? std::string(", nothing more was expected")
                                      : ", expected " + script_.front().Describe());
    return std::nullopt;
  }
  DesktopExpectation e = std::move(script_.front());
  script_.pop_front();
  const std::string& actual = MatchedText(call);
  if (e.text_) {
    const bool matches = e.prefixOnly_ ? actual.rfind(*e.text_, 0) == 0 : actual == *e.text_;
    if (!matches) {
      ADD_FAILURE() << KindName(call.kind) << " text: expected "
                    << (e.prefixOnly_ ? "a text starting with " : "") << Quote(*e.text_) << ", got "
                    << Quote(actual);
    }
  }
  const std::string& title =
      call.kind == DesktopCallKind::kOpenFile || call.kind == DesktopCallKind::kSaveFile
          ? call.dialog.title
          : call.title;
  CheckField("title", e.title_, title, call);
  CheckField("buttons", e.buttons_, call.buttons, call);
  CheckField("operation", e.operation_, call.operation, call);
  CheckField("parameters", e.parameters_, call.parameters, call);
  CheckField("directory", e.directory_, call.directory, call);
  CheckField("show", e.show_, call.show, call);
  return e;
}

int ScriptedDesktop::MsgBox(const std::string& prompt, int buttons, const std::string& title) {
  DesktopCall call;
  call.kind = DesktopCallKind::kMsgBox;
  call.prompt = prompt;
  call.buttons = buttons;
  call.title = title;
  const auto e = Take(call);
  if (e && e->then_) e->then_();
  return e ? e->answer_ : SafestAnswer(buttons);
}

std::string ScriptedDesktop::InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& defaultText) {
  DesktopCall call;
  call.kind = DesktopCallKind::kInputBox;
  call.prompt = prompt;
  call.title = title;
  call.defaultText = defaultText;
  const auto e = Take(call);
  return e ? e->answerText_ : std::string();
}

std::string ScriptedDesktop::FileDialog(const ui::FileDialogRequest& request,
                                        DesktopCallKind kind) {
  DesktopCall call;
  call.kind = kind;
  call.dialog = request;
  const auto e = Take(call);
  if (!e || e->cancel_) throw vb::VbError(vb::kCancelSelected);
  return e->answerText_;
}

std::string ScriptedDesktop::OpenFileDialog(const ui::FileDialogRequest& request) {
  return FileDialog(request, DesktopCallKind::kOpenFile);
}

std::string ScriptedDesktop::SaveFileDialog(const ui::FileDialogRequest& request) {
  return FileDialog(request, DesktopCallKind::kSaveFile);
}

int ScriptedDesktop::ShellExecute(const std::string& operation, const std::string& file,
                                  const std::string& parameters, const std::string& directory,
                                  int show) {
  DesktopCall call;
  call.kind = DesktopCallKind::kShell;
  call.operation = operation;
  call.file = file;
  call.parameters = parameters;
  call.directory = directory;
  call.show = show;
  const auto e = Take(call);
  return e ? e->answer_ : 42;
}

void ScriptedDesktop::OpenWith(const std::string& file) {
  DesktopCall call;
  call.kind = DesktopCallKind::kOpenWith;
  call.file = file;
  Take(call);
}

}  // namespace vellumar::test
