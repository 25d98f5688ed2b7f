#pragma once
// A desktop for tests that answers from a script of expected calls. A call that isn't the next
// one expected, or whose text differs, fails the running test with the text it got; a script
// that isn't used up fails the test when the desktop goes away. Every call is recorded.
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/services/desktop.h"

namespace vellumar::test {

enum class DesktopCallKind { kMsgBox, kInputBox, kOpenFile, kSaveFile, kShell, kOpenWith };

// One call as the program made it.
struct DesktopCall {
  DesktopCallKind kind = DesktopCallKind::kMsgBox;
  std::string prompt;            // MsgBox / InputBox text
  std::string title;             // MsgBox / InputBox title
  int buttons = 0;               // MsgBox style
  std::string defaultText;       // InputBox default
  ui::FileDialogRequest dialog;  // OpenFile / SaveFile
  std::string operation;         // Shell: "Open"
  std::string file;              // Shell / OpenWith: the file or program
  std::string parameters;        // Shell
  std::string directory;         // Shell
  int show = 0;                  // Shell
};

// One expected call and the answer to give. The With... methods add checks.
class DesktopExpectation {
 public:
  DesktopExpectation& WithTitle(std::string title);
  DesktopExpectation& WithButtons(int buttons);
  DesktopExpectation& WithPrompt(std::string prompt);
  DesktopExpectation& WithDirectory(std::string directory);
  DesktopExpectation& WithShow(int show);
  // Runs while the call is open, before its answer is given: what happens meanwhile on the
  // desktop (another program letting go of a file, say).
  DesktopExpectation& Then(std::function<void()> action);

 private:
  friend class ScriptedDesktop;
  std::string Describe() const;

  DesktopCallKind kind_ = DesktopCallKind::kMsgBox;
  std::optional<std::string> text_;        // prompt, dialog title, or shell file to match
  bool prefixOnly_ = false;                // text_ need only begin the actual text
  std::optional<std::string> title_;       // MsgBox/InputBox title to match
  std::optional<int> buttons_;             // MsgBox style to match
  std::optional<std::string> operation_;   // Shell
  std::optional<std::string> parameters_;  // Shell
  std::optional<std::string> directory_;   // Shell
  std::optional<int> show_;                // Shell
  int answer_ = 0;                         // MsgBox button, Shell result
  std::string answerText_;                 // InputBox text, chosen pathname
  bool cancel_ = false;                    // file dialog cancelled
  std::function<void()> then_;             // runs before the answer is given
};

class ScriptedDesktop final : public ui::Desktop {
 public:
  ScriptedDesktop() = default;
  ~ScriptedDesktop() override;
  ScriptedDesktop(const ScriptedDesktop&) = delete;
  ScriptedDesktop& operator=(const ScriptedDesktop&) = delete;

  DesktopExpectation& ExpectMsgBox(std::string text, int answer = ui::vbOK);
  DesktopExpectation& ExpectMsgBoxStartingWith(std::string prefix, int answer = ui::vbOK);
  DesktopExpectation& ExpectInputBox(std::string answer);
  DesktopExpectation& ExpectOpenFile(std::string path);
  DesktopExpectation& ExpectOpenFileCancel();
  DesktopExpectation& ExpectSaveFile(std::string path);
  DesktopExpectation& ExpectSaveFileCancel();
  DesktopExpectation& ExpectShell(std::string operation, std::string file, std::string parameters,
                                  int result = 42);
  DesktopExpectation& ExpectOpenWith(std::string file);

  void SetScreen(ui::ScreenSize screen) { screen_ = screen; }

  const std::vector<DesktopCall>& Calls() const { return calls_; }
  // Message boxes from this set are answered with the safest answer and only recorded, even
  // when unscripted: for tests where a failure may or may not bring one up.
  void Tolerate(std::vector<std::string> texts) { tolerated_ = std::move(texts); }
  // The texts of the message boxes shown, in order.
  std::vector<std::string> MessageBoxTexts() const;
  std::size_t PendingExpectations() const { return script_.size(); }

  int MsgBox(const std::string& prompt, int buttons, const std::string& title) override;
  std::string InputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;
  std::string OpenFileDialog(const ui::FileDialogRequest& request) override;
  std::string SaveFileDialog(const ui::FileDialogRequest& request) override;
  int ShellExecute(const std::string& operation, const std::string& file,
                   const std::string& parameters, const std::string& directory, int show) override;
  void OpenWith(const std::string& file) override;
  ui::ScreenSize Screen() const override { return screen_; }

 private:
  DesktopExpectation& Add(DesktopCallKind kind);
  // The next expectation if it is of this kind (consumed), else a failure and nullopt.
  std::optional<DesktopExpectation> Take(const DesktopCall& call);
  std::string FileDialog(const ui::FileDialogRequest& request, DesktopCallKind kind);

  std::deque<DesktopExpectation> script_;
  std::vector<DesktopCall> calls_;
  std::vector<std::string> tolerated_;  // message texts answered without a script
  ui::ScreenSize screen_;
};

}  // namespace vellumar::test
