#include "platform/print/surface.h"

#include "platform/vb/error.h"

namespace vellumar::print {

bool operator==(const FontSpec& a, const FontSpec& b) {
  return a.name == b.name && a.size == b.size && a.bold == b.bold;
}

void Surface::SetScaleMode(int mode) {
  if (mode != kScaleInches) vb::Raise(vb::kInvalidProcedureCall);
}

void Surface::OpenPage() {
  if (documentDone_) {
    pages_ = 0;
    documentDone_ = false;
  }
  if (pages_ == 0 || pageBroken_) {
    ++pages_;
    pageBroken_ = false;
    StartPage(pages_);
  }
}

void Surface::Print(const std::string& text) {
  OpenPage();
  DrawText(pages_, x_, y_, font_, foreColor_, text);
  y_ += TextHeight(text);
  x_ = 0.0;
}

void Surface::Line(double x1, double y1, double x2, double y2) { Line(x1, y1, x2, y2, foreColor_); }

void Surface::Line(double x1, double y1, double x2, double y2, Colour colour) {
  OpenPage();
  DrawLine(pages_, x1, y1, x2, y2, colour);
  x_ = x2;
  y_ = y2;
}

void Surface::NewPage() {
  if (pages_ > 0 && !documentDone_) pageBroken_ = true;
  x_ = 0.0;
  y_ = 0.0;
}

void Surface::EndDoc() {
  FinishDocument(pages_);
  pageBroken_ = false;
  x_ = 0.0;
  y_ = 0.0;
  documentDone_ = true;
}

}  // namespace vellumar::print
