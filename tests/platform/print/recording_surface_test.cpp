// The recording surface: what each call records, its fixed metrics, the text position's
// movement, colours and a refused text.
#include "platform/print/recording_surface.h"

#include <gtest/gtest.h>

#include "platform/vb/error.h"

namespace vellumar::print {
namespace {

TEST(ColourTest, PlatformValueHasRedInTheLowByte) {
  EXPECT_EQ(Rgb(255, 0, 0), 255u);
  EXPECT_EQ(Rgb(0, 0, 255), 0xff0000u);
  EXPECT_EQ(Rgb(0, 255, 0), 0x00ff00u);
  EXPECT_EQ(kRed, 255u);
  EXPECT_EQ(kBlue, 0xff0000u);
  EXPECT_EQ(kBlack, 0u);
  EXPECT_EQ(Rgb(0x12, 0x34, 0x56), 0x563412u);
}

TEST(RecordingSurfaceTest, RecordsTextWithPositionFontAndColour) {
  RecordingSurface surface;
  surface.SetScaleMode(kScaleInches);
  surface.SetCurrentX(1.25);
  surface.SetCurrentY(0.5);
  surface.SetFontName("arial");
  surface.SetFontSize(14);
  surface.SetFontBold(true);
  surface.SetForeColor(kRed);
  surface.Print("Confirming");

  ASSERT_EQ(surface.Calls().size(), 1u);
  const SurfaceCall& call = surface.Calls()[0];
  EXPECT_EQ(call.kind, SurfaceCallKind::kText);
  EXPECT_EQ(call.page, 1);
  EXPECT_DOUBLE_EQ(call.x, 1.25);
  EXPECT_DOUBLE_EQ(call.y, 0.5);
  EXPECT_EQ(call.text, "Confirming");
  EXPECT_EQ(call.font.name, "arial");
  EXPECT_DOUBLE_EQ(call.font.size, 14.0);
  EXPECT_TRUE(call.font.bold);
  EXPECT_EQ(call.colour, 255u);
}

TEST(RecordingSurfaceTest, PrintMovesToTheStartOfTheNextLine) {
  RecordingSurface surface;
  surface.SetFontSize(72);  // an em of one inch
  surface.SetCurrentX(2.0);
  surface.SetCurrentY(1.0);
  surface.Print("A");
  EXPECT_DOUBLE_EQ(surface.CurrentX(), 0.0);
  EXPECT_DOUBLE_EQ(surface.CurrentY(), 1.0 + 1.25);
  surface.Print("B");
  ASSERT_EQ(surface.Texts().size(), 2u);
  EXPECT_DOUBLE_EQ(surface.Texts()[1].x, 0.0);
  EXPECT_DOUBLE_EQ(surface.Texts()[1].y, 2.25);
}

TEST(RecordingSurfaceTest, FixedMetricsFollowSizeAndBoldness) {
  RecordingSurface surface;
  surface.SetFontSize(8);
  const double em = 8.0 / 72.0;
  EXPECT_DOUBLE_EQ(surface.TextWidth(" Date"), 5 * 0.5 * em);
  EXPECT_DOUBLE_EQ(surface.TextHeight("A"), 1.25 * em);
  EXPECT_DOUBLE_EQ(surface.TextWidth(""), 0.0);
  surface.SetFontBold(true);
  EXPECT_DOUBLE_EQ(surface.TextWidth(" Date"), 5 * 0.55 * em);
  surface.SetFontSize(48);
  EXPECT_DOUBLE_EQ(surface.TextHeight("A"), 1.25 * 48.0 / 72.0);
  // "é" is two bytes but one character.
  EXPECT_DOUBLE_EQ(surface.TextWidth("\xc3\xa9"), 0.55 * 48.0 / 72.0);
}

TEST(RecordingSurfaceTest, LinesTakeForeColorOrTheirOwnAndMoveThePosition) {
  RecordingSurface surface;
  surface.SetForeColor(kBlue);
  surface.Line(0.0, 1.5, 5.0, 1.5);
  surface.Line(1.0, 2.0, 1.0, 3.0, kBlack);
  const auto lines = surface.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].colour, kBlue);
  EXPECT_DOUBLE_EQ(lines[0].x, 0.0);
  EXPECT_DOUBLE_EQ(lines[0].y, 1.5);
  EXPECT_DOUBLE_EQ(lines[0].x2, 5.0);
  EXPECT_DOUBLE_EQ(lines[0].y2, 1.5);
  EXPECT_EQ(lines[1].colour, kBlack);
  EXPECT_DOUBLE_EQ(surface.CurrentX(), 1.0);
  EXPECT_DOUBLE_EQ(surface.CurrentY(), 3.0);
  EXPECT_EQ(surface.ForeColor(), kBlue);
}

TEST(RecordingSurfaceTest, OnlyInchesAreAScale) {
  RecordingSurface surface;
  EXPECT_EQ(surface.ScaleMode(), 5);
  EXPECT_NO_THROW(surface.SetScaleMode(5));
  try {
    surface.SetScaleMode(1);
    FAIL() << "twips accepted";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), vb::kInvalidProcedureCall);
  }
}

TEST(RecordingSurfaceTest, ARefusedTextRaisesOnceAndDrawingGoesOn) {
  RecordingSurface surface;
  surface.FailPrintOf("bad", 482, "Printer error");
  surface.SetCurrentY(1.0);
  try {
    surface.Print("bad");
    FAIL() << "the text was drawn";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), 482);
    EXPECT_EQ(e.description(), "Printer error");
  }
  EXPECT_DOUBLE_EQ(surface.CurrentY(), 1.0);  // nothing drawn, nothing moved
  surface.Print("bad");
  surface.Print("good");
  ASSERT_EQ(surface.Texts().size(), 2u);
  EXPECT_EQ(surface.Texts()[0].text, "bad");
  ASSERT_TRUE(surface.FindText("good").has_value());
  EXPECT_FALSE(surface.FindText("missing").has_value());
}

}  // namespace
}  // namespace vellumar::print
