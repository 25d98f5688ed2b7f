#pragma once
// A surface that draws nothing and records every call: what was drawn, where, on which page,
// in which font and colour. Its metrics are fixed so that positions computed from them are
// the same on every machine: a character is 0.5 em wide, 0.55 em in bold; a line of text is
// 1.25 em high; an em is the font's size in points over 72 inches. Characters are counted as
// UTF-8 code points.
#include <optional>
#include <string>
#include <vector>

#include "platform/print/surface.h"

namespace vellumar::print {

enum class SurfaceCallKind { kText, kLine, kNewPage, kEndDoc };

// One call as the drawing code made it. A page break is recorded where it takes effect, when
// something is drawn after NewPage, as kNewPage with the number of the page it opens.
struct SurfaceCall {
  SurfaceCallKind kind = SurfaceCallKind::kText;
  int page = 0;      // page drawn on; kNewPage: the page opened; kEndDoc: the page count
  double x = 0.0;    // text: top left corner; line: first point (inches)
  double y = 0.0;    // inches
  double x2 = 0.0;   // line: second point (inches)
  double y2 = 0.0;   // inches
  std::string text;  // kText
  FontSpec font;     // kText: the font at the time
  Colour colour = kBlack;
};

class RecordingSurface final : public Surface {
 public:
  RecordingSurface() = default;

  // Width of one character and height of a line in em (see above).
  static constexpr double kCharWidthEm = 0.5;
  static constexpr double kBoldCharWidthEm = 0.55;
  static constexpr double kLineHeightEm = 1.25;

  // Every call in order, page breaks and ends of documents included.
  const std::vector<SurfaceCall>& Calls() const { return calls_; }
  // The texts drawn, in order.
  std::vector<SurfaceCall> Texts() const;
  // The lines drawn, in order.
  std::vector<SurfaceCall> Lines() const;
  // The first text drawn that equals `text`, if any.
  std::optional<SurfaceCall> FindText(const std::string& text) const;
  // Pages of the documents ended so far, in order.
  const std::vector<int>& DocumentPages() const { return documents_; }
  void Clear();

  // The next Print of `text` raises this error instead of drawing (a printer refusing a text).
  void FailPrintOf(std::string text, int number, std::string description);

 protected:
  void DrawText(int page, double x, double y, const FontSpec& font, Colour colour,
                const std::string& text) override;
  void DrawLine(int page, double x1, double y1, double x2, double y2, Colour colour) override;
  void StartPage(int page) override;
  void FinishDocument(int pages) override;
  double MeasureWidth(const FontSpec& font, const std::string& text) const override;
  double MeasureHeight(const FontSpec& font, const std::string& text) const override;

 private:
  struct Failure {
    std::string text;
    int number = 0;
    std::string description;
  };

  std::vector<SurfaceCall> calls_;
  std::vector<int> documents_;  // page count of each ended document
  std::optional<Failure> failure_;
};

}  // namespace vellumar::print
