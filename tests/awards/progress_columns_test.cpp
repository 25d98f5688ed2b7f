#include "awards/progress_columns.h"

#include <gtest/gtest.h>

#include "logstore/schema_tables.h"

namespace vellumar {
namespace {

TEST(ProgressColumns, BandsAreComparedInLowerCase) {
  const char* bands[] = {"160m", "80m", "40m", "30m", "20m", "17m",
                         "15m",  "12m", "10m", "6m",  "2m"};
  for (int i = 0; i < 11; ++i) {
    EXPECT_EQ(BandProgressField(bands[i]), 3 + i) << bands[i];
    std::string upper = bands[i];
    upper.back() = 'M';
    EXPECT_EQ(BandProgressField(upper), 3 + i) << upper;
  }
  EXPECT_EQ(BandProgressField("70cm"), -1);
  EXPECT_EQ(BandProgressField("60M"), -1);
  EXPECT_EQ(BandProgressField(""), -1);
}

TEST(ProgressColumns, ModesGoToTheirGroups) {
  for (const char* m : {"ssb", "USB", "lsb", "AM", "fm"}) EXPECT_EQ(ModeProgressField(m), 14) << m;
  for (const char* m : {"CW", "hscw"}) EXPECT_EQ(ModeProgressField(m), 15) << m;
  for (const char* m : {"RTTY", "hell", "MFSK", "mt63", "PAC", "pkt", "Throb", "tor"})
    EXPECT_EQ(ModeProgressField(m), 16) << m;
  for (const char* m : {"PSK", "psk31", "BPSK", "qpsk"}) EXPECT_EQ(ModeProgressField(m), 17) << m;
  EXPECT_EQ(ModeProgressField("SSTV"), -1);
  EXPECT_EQ(ModeProgressField("FT8"), -1);
  EXPECT_EQ(ModeProgressField(""), -1);
}

TEST(ProgressColumns, ReverseNames) {
  EXPECT_EQ(BandProgressName(3), "160M");
  EXPECT_EQ(BandProgressName(13), "2M");
  EXPECT_EQ(BandProgressName(2), "");
  EXPECT_EQ(BandProgressName(14), "");
  EXPECT_EQ(BandProgressName(-1), "");
  for (int i = 3; i <= 13; ++i) {
    EXPECT_EQ(BandProgressName(i), logstore::kProgressFields[i].name);
    vb::Variant v = BandFieldName(i);
    EXPECT_TRUE(v.IsString());
    EXPECT_EQ(v.ToString(), BandProgressName(i));
    EXPECT_EQ(BandProgressField(BandProgressName(i)), i);
  }
  EXPECT_EQ(BandFieldName(17).ToString(), "");
  EXPECT_EQ(ModeFieldName(14).ToString(), "Phone");  // unlike the column's name PHONE
  EXPECT_EQ(ModeFieldName(15).ToString(), "CW");
  EXPECT_EQ(ModeFieldName(16).ToString(), "RTTY");
  EXPECT_EQ(ModeFieldName(17).ToString(), "PSK");
  EXPECT_TRUE(ModeFieldName(17).IsString());
  EXPECT_EQ(ModeFieldName(13).ToString(), "");
  EXPECT_EQ(ModeFieldName(18).ToString(), "");
}

TEST(ProgressColumns, TheARRLVerifiesAllButPSK) {
  EXPECT_FALSE(ARRLVerified(-1));
  EXPECT_FALSE(ARRLVerified(0));
  EXPECT_FALSE(ARRLVerified(2));
  for (int i = 3; i <= 16; ++i) EXPECT_TRUE(ARRLVerified(i)) << i;
  EXPECT_FALSE(ARRLVerified(17));
  EXPECT_FALSE(ARRLVerified(18));
}

}  // namespace
}  // namespace vellumar
