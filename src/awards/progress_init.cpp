#include "awards/progress_init.h"

#include "awards/progress_columns.h"
#include "platform/vb/error.h"

namespace vellumar {

void InitializeProgressTableFromDatabase(
    db::Database& log, db::Recordset dxccTable, db::Recordset& progressRecordset,
    const std::function<void(int number, const std::string& where)>& reportError) {
  try {
    try {
      if (progressRecordset) progressRecordset.Close();
    } catch (const vb::VbError&) {
      // It may not be open.
    }
    progressRecordset = log.OpenRecordset("Progress", db::dbOpenDynaset);
    dxccTable.MoveFirst();  // an empty DXCC table is a fault of the database: 3021
    while (!dxccTable.EOF_()) {
      progressRecordset.AddNew();
      progressRecordset.Fields(kProgressCountryCode)
          .SetValue(dxccTable.Fields("CountryCode").Value());
      progressRecordset.Fields(kProgressPrefix).SetValue(dxccTable.Fields("DXCCPrefix").Value());
      vb::Variant endDate = dxccTable.Fields("EndDate").Value();
      bool current = endDate.IsNull() || endDate.ToStringOrEmpty().empty();
      progressRecordset.Fields(kProgressValid).SetValue(vb::Variant(current));
      for (int column = kProgressFirstBand; column < kProgressColumnCount; ++column)
        progressRecordset.Fields(column).SetValue(vb::Variant(std::string()));
      progressRecordset.Update();
      dxccTable.MoveNext();
    }
    progressRecordset.Close();
  } catch (const vb::VbError& e) {
    reportError(e.number(), "VellumModule.InitializeProgressTableFromDatabase");
  }
}

}  // namespace vellumar
