#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "logstore/field_behaviour.h"
#include "logstore/schema_tables.h"

namespace vellumar::logstore {
namespace {

TEST(FieldBehaviourTable, EnterWalksReportNameQTHAndVia) {
  EXPECT_EQ(kFieldBehaviours[field::RST_Sent].enter, field::RST_Rcvd);
  EXPECT_EQ(kFieldBehaviours[field::RST_Rcvd].enter, field::Name);
  EXPECT_EQ(kFieldBehaviours[field::Name].enter, field::QTH);
  EXPECT_EQ(kFieldBehaviours[field::QTH].enter, field::QSL_Via);
  EXPECT_EQ(kFieldBehaviours[field::Call].enter, kEnterBeginsQSO);
  int moving = 0;
  for (const FieldBehaviour& b : kFieldBehaviours)
    if (b.enter != kEnterStays) ++moving;
  EXPECT_EQ(moving, 5);
}

TEST(FieldBehaviourTable, ChecksOfTheSpecialSlots) {
  EXPECT_EQ(kFieldBehaviours[field::Call].check, FieldCheck::kCallsignRequired);
  EXPECT_EQ(kFieldBehaviours[field::QSO_Begin].check, FieldCheck::kQSOTime);
  EXPECT_EQ(kFieldBehaviours[field::QSO_End].check, FieldCheck::kQSOTime);
  EXPECT_EQ(kFieldBehaviours[field::QSLSDATE].check, FieldCheck::kCardDate);
  EXPECT_EQ(kFieldBehaviours[field::QSLRDATE].check, FieldCheck::kCardDate);
  EXPECT_EQ(kFieldBehaviours[field::ADDRESS].check, FieldCheck::kAlwaysValid);
  EXPECT_EQ(kFieldBehaviours[field::Freq].check, FieldCheck::kWidth);
  EXPECT_EQ(FieldBehaviourOf(35).check, FieldCheck::kWidth);
  EXPECT_EQ(FieldBehaviourOf(-1).enter, kEnterStays);
}

TEST(FieldBehaviourTable, KeyFilters) {
  EXPECT_EQ(kFieldBehaviours[field::Call].keys, KeyFilter::kUppercase);
  EXPECT_EQ(kFieldBehaviours[field::Freq].keys, KeyFilter::kDecimal);
  EXPECT_EQ(kFieldBehaviours[field::DXCCID].keys, KeyFilter::kDigits);
  EXPECT_EQ(kFieldBehaviours[field::Name].keys, KeyFilter::kAny);
}

// The export writes 33 tags: every column but PROVINCE, BROKEN and MYQTHID, the column's own
// name except for the DXCC code and the two times (the start also gives the date).
TEST(FieldBehaviourTable, AdifTags) {
  EXPECT_EQ(AdifTag(field::Band), "Band");
  EXPECT_EQ(AdifTag(field::QSL_Rcvd), "QSL_Rcvd");
  EXPECT_EQ(AdifTag(field::TX_Power), "TX_Power");
  EXPECT_EQ(AdifTag(field::DXCCID), "DXCC");
  EXPECT_EQ(AdifTag(field::QSO_Begin), "TIME_ON");
  EXPECT_STREQ(kFieldBehaviours[field::QSO_Begin].adifDateTag, "QSO_DATE");
  EXPECT_EQ(AdifTag(field::QSO_End), "TIME_OFF");
  EXPECT_EQ(AdifTag(field::ADDRESS), "ADDRESS");
  EXPECT_EQ(AdifTag(field::PROVINCE), "");
  EXPECT_EQ(AdifTag(field::BROKEN), "");
  EXPECT_EQ(AdifTag(field::MYQTHID), "");

  std::set<std::string> tags;
  for (int i = 0; i < kQSOFieldCount; ++i) {
    if (!AdifTag(i).empty()) tags.insert(AdifTag(i));
    if (kFieldBehaviours[i].adifDateTag) tags.insert(kFieldBehaviours[i].adifDateTag);
  }
  EXPECT_EQ(tags.size(), 33u);
}

}  // namespace
}  // namespace vellumar::logstore
