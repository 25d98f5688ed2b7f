#include "logstore/field_behaviour.h"

#include "logstore/schema_tables.h"

namespace vellumar::logstore {
namespace {

using enum FieldCheck;
using enum KeyFilter;

constexpr FieldBehaviour kPlain{kWidth, kAny, kEnterStays, kTagIsColumnName};

}  // namespace

// Enter walks the report, name and QTH boxes in the order they are asked on the air.
const std::array<FieldBehaviour, kQSOFieldCount> kFieldBehaviours = {{
    /* Band */ kPlain,
    /* Call */ {kCallsignRequired, kUppercase, kEnterBeginsQSO, kTagIsColumnName},
    /* DXCCPrefix */ kPlain,
    /* DXCCID */ {kWidth, kDigits, kEnterStays, "DXCC"},
    /* Freq */ {kWidth, kDecimal, kEnterStays, kTagIsColumnName},
    /* Mode */ kPlain,
    /* Name */ {kWidth, kAny, field::QTH, kTagIsColumnName},
    /* Operator */ kPlain,
    /* QSL_Rcvd */ kPlain,
    /* QSL_Sent */ kPlain,
    /* QSL_Via */ kPlain,
    /* Comment */ kPlain,
    /* QTH */ {kWidth, kAny, field::QSL_Via, kTagIsColumnName},
    /* RST_Rcvd */ {kWidth, kAny, field::Name, kTagIsColumnName},
    /* RST_Sent */ {kWidth, kAny, field::RST_Rcvd, kTagIsColumnName},
    /* State */ kPlain,
    /* QSLSDATE */ {kCardDate, kAny, kEnterStays, kTagIsColumnName},
    /* QSLRDATE */ {kCardDate, kAny, kEnterStays, kTagIsColumnName},
    /* TX_Power */ kPlain,
    /* QSO_Begin */ {kQSOTime, kAny, kEnterStays, "TIME_ON", "QSO_DATE"},
    /* QSO_End */ {kQSOTime, kAny, kEnterStays, "TIME_OFF"},
    /* QSLMsg */ kPlain,
    /* CONT */ kPlain,
    /* ITUZ */ kPlain,
    /* CQZ */ kPlain,
    /* IOTA */ kPlain,
    /* CNTY */ kPlain,
    /* CONTEST_ID */ kPlain,
    /* GRIDSQUARE */ kPlain,
    /* SRX */ kPlain,
    /* STX */ kPlain,
    /* PROVINCE */ {kWidth, kAny, kEnterStays, kNotExported},
    /* BROKEN */ {kWidth, kAny, kEnterStays, kNotExported},
    /* MYQTHID */ {kWidth, kAny, kEnterStays, kNotExported},
    /* ADDRESS */ {kAlwaysValid, kAny, kEnterStays, kTagIsColumnName},
}};

const FieldBehaviour& FieldBehaviourOf(int index) {
  if (index < 0 || index >= kQSOFieldCount) return kPlain;
  return kFieldBehaviours[static_cast<size_t>(index)];
}

std::string AdifTag(int index) {
  const FieldBehaviour& behaviour = FieldBehaviourOf(index);
  if (behaviour.adifTag != kTagIsColumnName) return behaviour.adifTag;
  if (index < 0 || index >= kQSOFieldCount) return kNotExported;
  return kQSOFields[static_cast<size_t>(index)].name;
}

}  // namespace vellumar::logstore
