#include "platform/print/recording_surface.h"

#include <algorithm>

#include "platform/vb/error.h"

namespace vellumar::print {

namespace {

double Em(const FontSpec& font) { return font.size / 72.0; }

// Code points: every byte that doesn't continue a UTF-8 sequence starts a character.
std::size_t CodePoints(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
  }));
}

std::vector<SurfaceCall> OfKind(const std::vector<SurfaceCall>& calls, SurfaceCallKind kind) {
  std::vector<SurfaceCall> out;
  std::copy_if(calls.begin(), calls.end(), std::back_inserter(out),
               [kind](const SurfaceCall& call) { return call.kind == kind; });
  return out;
}

}  // namespace

std::vector<SurfaceCall> RecordingSurface::Texts() const {
  return OfKind(calls_, SurfaceCallKind::kText);
}

std::vector<SurfaceCall> RecordingSurface::Lines() const {
  return OfKind(calls_, SurfaceCallKind::kLine);
}

std::optional<SurfaceCall> RecordingSurface::FindText(const std::string& text) const {
  for (const SurfaceCall& call : calls_) {
    if (call.kind == SurfaceCallKind::kText && call.text == text) return call;
  }
  return std::nullopt;
}

void RecordingSurface::Clear() {
  calls_.clear();
  documents_.clear();
}

void RecordingSurface::FailPrintOf(std::string text, int number, std::string description) {
  failure_ = Failure{std::move(text), number, std::move(description)};
}

void RecordingSurface::DrawText(int page, double x, double y, const FontSpec& font, Colour colour,
                                const std::string& text) {
  if (failure_ && failure_->text == text) {
    Failure failure = std::move(*failure_);
    failure_.reset();
    throw vb::VbError(failure.number, failure.description);
  }
  calls_.push_back(SurfaceCall{SurfaceCallKind::kText, page, x, y, 0.0, 0.0, text, font, colour});
}

void RecordingSurface::DrawLine(int page, double x1, double y1, double x2, double y2,
                                Colour colour) {
  calls_.push_back(SurfaceCall{SurfaceCallKind::kLine, page, x1, y1, x2, y2, {}, {}, colour});
}

void RecordingSurface::StartPage(int page) {
  if (page <= 1) return;
  calls_.push_back(
      SurfaceCall{SurfaceCallKind::kNewPage, page, 0.0, 0.0, 0.0, 0.0, {}, {}, kBlack});
}

void RecordingSurface::FinishDocument(int pages) {
  calls_.push_back(
      SurfaceCall{SurfaceCallKind::kEndDoc, pages, 0.0, 0.0, 0.0, 0.0, {}, {}, kBlack});
  documents_.push_back(pages);
}

double RecordingSurface::MeasureWidth(const FontSpec& font, const std::string& text) const {
  const double perChar = font.bold ? kBoldCharWidthEm : kCharWidthEm;
  return static_cast<double>(CodePoints(text)) * perChar * Em(font);
}

double RecordingSurface::MeasureHeight(const FontSpec& font, const std::string& text) const {
  return kLineHeightEm * Em(font);
}

}  // namespace vellumar::print
