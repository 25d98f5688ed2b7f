// Pages of a surface: a NewPage with nothing drawn after it adds no page, whatever the kind of
// surface; EndDoc ends a document and the next one starts at page 1.
#include <gtest/gtest.h>

#include "platform/print/recording_surface.h"

namespace vellumar::print {
namespace {

// The smallest kind of surface, to show the page rule lives in the shared base.
class CountingSurface final : public Surface {
 public:
  std::vector<int> started;   // pages started, in order
  std::vector<int> finished;  // page count of each document
  int drawn = 0;

 protected:
  void DrawText(int page, double, double, const FontSpec&, Colour, const std::string&) override {
    ++drawn;
  }
  void DrawLine(int page, double, double, double, double, Colour) override { ++drawn; }
  void StartPage(int page) override { started.push_back(page); }
  void FinishDocument(int pages) override { finished.push_back(pages); }
  double MeasureWidth(const FontSpec&, const std::string& text) const override {
    return 0.1 * static_cast<double>(text.size());
  }
  double MeasureHeight(const FontSpec&, const std::string&) const override { return 0.2; }
};

TEST(SurfacePagesTest, EnvelopesEachFollowedByNewPageMakeAsManyPages) {
  for (int envelopes = 1; envelopes <= 4; ++envelopes) {
    RecordingSurface surface;
    for (int i = 0; i < envelopes; ++i) {
      surface.SetCurrentX(4.0);
      surface.SetCurrentY(2.0);
      surface.Print("envelope " + std::to_string(i + 1));
      surface.NewPage();
    }
    surface.EndDoc();
    EXPECT_EQ(surface.PageCount(), envelopes);
    ASSERT_EQ(surface.DocumentPages().size(), 1u);
    EXPECT_EQ(surface.DocumentPages()[0], envelopes);
    const auto texts = surface.Texts();
    for (int i = 0; i < envelopes; ++i) EXPECT_EQ(texts[i].page, i + 1);
  }
}

TEST(SurfacePagesTest, RepeatedOrLeadingNewPageAddsNothing) {
  RecordingSurface surface;
  surface.NewPage();  // nothing drawn yet
  surface.Print("a");
  surface.NewPage();
  surface.NewPage();
  surface.NewPage();
  surface.Line(0, 0, 1, 1);
  surface.EndDoc();
  EXPECT_EQ(surface.PageCount(), 2);
  const auto& calls = surface.Calls();
  ASSERT_EQ(calls.size(), 4u);
  EXPECT_EQ(calls[0].kind, SurfaceCallKind::kText);
  EXPECT_EQ(calls[0].page, 1);
  EXPECT_EQ(calls[1].kind, SurfaceCallKind::kNewPage);
  EXPECT_EQ(calls[1].page, 2);
  EXPECT_EQ(calls[2].kind, SurfaceCallKind::kLine);
  EXPECT_EQ(calls[2].page, 2);
  EXPECT_EQ(calls[3].kind, SurfaceCallKind::kEndDoc);
  EXPECT_EQ(calls[3].page, 2);
}

TEST(SurfacePagesTest, NewPageReturnsToTheTopLeftCorner) {
  RecordingSurface surface;
  surface.Print("a");
  surface.SetCurrentX(3.0);
  surface.NewPage();
  EXPECT_DOUBLE_EQ(surface.CurrentX(), 0.0);
  EXPECT_DOUBLE_EQ(surface.CurrentY(), 0.0);
}

TEST(SurfacePagesTest, TheRuleHoldsForEveryKindOfSurface) {
  CountingSurface surface;
  surface.NewPage();
  surface.Print("x");
  surface.NewPage();
  surface.Print("y");
  surface.NewPage();
  surface.EndDoc();
  EXPECT_EQ(surface.started, (std::vector<int>{1, 2}));
  EXPECT_EQ(surface.finished, (std::vector<int>{2}));
  EXPECT_EQ(surface.drawn, 2);
}

TEST(SurfacePagesTest, AnEmptyDocumentHasNoPage) {
  CountingSurface surface;
  surface.NewPage();
  surface.EndDoc();
  EXPECT_TRUE(surface.started.empty());
  EXPECT_EQ(surface.finished, (std::vector<int>{0}));
}

TEST(SurfacePagesTest, TheNextDocumentStartsAtPageOneKeepingTheFont) {
  CountingSurface surface;
  surface.SetFontSize(14);
  surface.SetForeColor(kBlue);
  surface.Print("first");
  surface.NewPage();
  surface.Print("second");
  surface.EndDoc();
  surface.NewPage();  // after the end: nothing to break
  surface.Print("third");
  EXPECT_EQ(surface.PageCount(), 1);
  surface.EndDoc();
  EXPECT_EQ(surface.started, (std::vector<int>{1, 2, 1}));
  EXPECT_EQ(surface.finished, (std::vector<int>{2, 1}));
  EXPECT_DOUBLE_EQ(surface.FontSize(), 14.0);
  EXPECT_EQ(surface.ForeColor(), kBlue);
}

}  // namespace
}  // namespace vellumar::print
