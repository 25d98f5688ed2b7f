#pragma once
// A drawing surface in inches, with the printer object's properties and methods: the current
// position, the font, the text colour, text, lines, text metrics, pages and the end of a
// document. The printer, the preview picture and the recording surface of the tests are kinds
// of it; the drawing code sees only this class.
//
// Pages. A document starts with no page. The first drawing opens page 1. NewPage ends the
// current page, but the next page only opens when something is drawn after it: a NewPage with
// nothing drawn after it adds no page, so n envelopes each followed by NewPage make n pages.
// EndDoc ends the document and the surface is ready for the next one, keeping its font,
// colour and position settings as they stand (one printer object serves a whole run).
#include <cstdint>
#include <string>

namespace vellumar::print {

// The only scale the program draws in: inches.
inline constexpr int kScaleInches = 5;

// Colours are the platform's colour value 0x00BBGGRR: red in the low byte, blue in the third.
using Colour = std::uint32_t;
inline constexpr Colour Rgb(int red, int green, int blue) {
  return static_cast<Colour>(red & 0xff) | static_cast<Colour>(green & 0xff) << 8 |
         static_cast<Colour>(blue & 0xff) << 16;
}
inline constexpr Colour kBlack = 0;
inline constexpr Colour kRed = 0xff;        // Rgb(255, 0, 0)
inline constexpr Colour kBlue = 0xff0000;   // Rgb(0, 0, 255)
inline constexpr Colour kWhite = 0xffffff;  // Rgb(255, 255, 255)

// The font that text is drawn and measured in.
struct FontSpec {
  std::string name = "arial";  // family as the program names it
  double size = 8.0;           // points (1/72 inch)
  bool bold = false;
};
bool operator==(const FontSpec& a, const FontSpec& b);

class Surface {
 public:
  virtual ~Surface() = default;
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  // ScaleMode: only 5 (inches) is accepted; any other value raises error 5.
  int ScaleMode() const { return kScaleInches; }
  void SetScaleMode(int mode);

  // Where the next text is drawn, in inches from the surface's origin (the printable area's
  // top left corner); y grows downwards.
  double CurrentX() const { return x_; }
  double CurrentY() const { return y_; }
  void SetCurrentX(double inches) { x_ = inches; }
  void SetCurrentY(double inches) { y_ = inches; }

  const FontSpec& Font() const { return font_; }
  const std::string& FontName() const { return font_.name; }
  void SetFontName(std::string name) { font_.name = std::move(name); }
  double FontSize() const { return font_.size; }
  void SetFontSize(double points) { font_.size = points; }
  bool FontBold() const { return font_.bold; }
  void SetFontBold(bool bold) { font_.bold = bold; }

  // The text colour (also what SetTextColor on the device context sets) and lines' default.
  Colour ForeColor() const { return foreColor_; }
  void SetForeColor(Colour colour) { foreColor_ = colour; }

  // Draws one line of text with its top left corner at the current position, then moves to
  // the start of the next line: CurrentX to 0, CurrentY down by TextHeight(text).
  void Print(const std::string& text);
  // A straight line in ForeColor, or in `colour`; the current position moves to its end.
  void Line(double x1, double y1, double x2, double y2);
  void Line(double x1, double y1, double x2, double y2, Colour colour);

  // The size `text` takes in the current font, in inches.
  double TextWidth(const std::string& text) const { return MeasureWidth(font_, text); }
  double TextHeight(const std::string& text) const { return MeasureHeight(font_, text); }

  // Ends the page and moves to 0, 0; the next drawing opens a new page (see above).
  void NewPage();
  // Ends the document: the pages drawn go out. The position returns to 0, 0.
  void EndDoc();

  // Pages opened in the document under way (after EndDoc: in the last document).
  int PageCount() const { return pages_; }

 protected:
  Surface() = default;

  // What a kind of surface does. StartPage is called before the first drawing of every page,
  // page 1 included (a document with nothing drawn starts none); DrawText and DrawLine get the
  // page they fall on; FinishDocument is called at EndDoc with the number of pages drawn.
  virtual void DrawText(int page, double x, double y, const FontSpec& font, Colour colour,
                        const std::string& text) = 0;
  virtual void DrawLine(int page, double x1, double y1, double x2, double y2, Colour colour) = 0;
  virtual void StartPage(int page) {}
  virtual void FinishDocument(int pages) {}
  virtual double MeasureWidth(const FontSpec& font, const std::string& text) const = 0;
  virtual double MeasureHeight(const FontSpec& font, const std::string& text) const = 0;

 private:
  // Opens the first page, or the page a NewPage asked for, before something is drawn.
  void OpenPage();

  double x_ = 0.0;  // inches
  double y_ = 0.0;  // inches
  FontSpec font_;
  Colour foreColor_ = kBlack;
  int pages_ = 0;              // pages opened in this document
  bool pageBroken_ = false;    // NewPage since the last drawing: the next drawing opens a page
  bool documentDone_ = false;  // EndDoc since the last drawing: the next drawing starts anew
};

}  // namespace vellumar::print
