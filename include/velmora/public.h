#pragma once

#include <cstdint>
#include <string>

#include "velmora/ado/recordset.h"
#include "velmora/collections/date.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"
#include "velmora/com/dispatch.h"

namespace velmora {

/// Settlement, switch data, check-info files and small look-ups. What all
/// operations share is told in interfaces.h.
class _clsPublic : public com::IDispatch {
 public:
  using Base = com::IDispatch;
  static constexpr com::Guid kInterfaceId =
      com::Guid::parse("6387F950-2127-4741-8A4F-F0D2D7AD90B5");
  static constexpr com::Guid kClassId = com::Guid::parse("A5A4CFB3-75C3-4EBD-9FFC-B20F2D1804AE");
  static constexpr const char* kProgId = "Velmora.clsPublic";

  /// Settles source against destination documents, amount by amount. Both recordsets
  /// are updated in place (either may be nothing: the other is settled within
  /// itself); each matched pair appends two Dictionary rows to `rsChkInfo`.
  /// `lCheckAmtFor`: 0, rows carry a foreign and a local amount; 1, one amount only.
  /// `lCheckWithQty`: not 0, quantities are settled too (mode 0 only). `dDictSwitch`:
  /// grouping, column of rsSrcBill → column with the group key; nothing or empty: one
  /// group. `sDsn`: the account set must be reachable; empty: none is asked. False: a group failed;
  /// what was settled before stays. Votes on the transaction.
  virtual bool AmtSettlement(const std::string& sDsn, ado::RecordsetRef& rsSrcBill,
                             ado::RecordsetRef& rsDestBill, collections::VectorRef& rsChkInfo,
                             std::int32_t lCheckAmtFor = 0, std::int32_t lCheckWithQty = 0,
                             const collections::DictionaryRef& dDictSwitch = {}) = 0;

  /// Fills amounts of a new document's rows in place, one option Dictionary a target
  /// column: FType (0: distribute FAmount over the rows; else convert FSrcFieldName),
  /// FAmount (lowered by what the rows took), FFieldName, FChkFieldName (the most a
  /// row may take), FSrcFieldName, FDecimal and FRateFieldName (columns; blank: 2
  /// places, rate 1), FRateType (0: multiply by the rate, else divide).
  /// `dFilter`: bSwitchRobEntry (false), rows of the opposite sign take their whole
  /// amount. Always answers false; an empty `strErrMsg` means success.
  virtual bool GetSwitchData(ado::RecordsetRef& rsEntry, const collections::VectorRef& vOption,
                             std::string& strErrMsg,
                             const collections::DictionaryRef& dFilter = {}) = 0;

  /// As GetSwitchData with opposite signs always taken whole, FChkFieldName2 (column
  /// subtracted from the check amount, optional) and in `dFilter` bCanOverAmt (false:
  /// else the last row takes the whole rest) and bCopyFields (false: else plan columns
  /// are copied to the remaining ones). True when it completed; `sDsn` is not used.
  virtual bool GetSwitchDataExt(const std::string& sDsn, ado::RecordsetRef& rsEntry,
                                collections::VectorRef& vOption,
                                const collections::DictionaryRef& dFilter,
                                std::string& strErrMsg) = 0;

  /// As GetSwitchData over a Vector of Dictionary rows, without sign test. Always
  /// answers false; an empty `strErrMsg` means success.
  virtual bool GetSwitchVectData(collections::VectorRef& rsEntry,
                                 const collections::VectorRef& vOption, std::string& strErrMsg) = 0;

  /// As _clsInitBalCheck::GetData.
  virtual ado::RecordsetRef GetData(const std::string& sDsn, const std::string& sSql) = 0;

  /// Writes a Vector of Dictionary rows as the text file `sFileName`.txt into the
  /// installation folder, replacing one of that name. False when that failed.
  virtual bool WriteCheckInfoByVector(const collections::VectorRef& rs,
                                      const std::string& sFileName) = 0;
  /// The same for a recordset, which is left at its end.
  virtual bool WriteCheckInfoByRs(const ado::RecordsetRef& rs, const std::string& sFileName) = 0;

  /// The account to propose for item `ItemID` of base-data class `ItemClassID` (1:
  /// customers, 8: suppliers) on a document of class `ClassTypeID`: the item's own,
  /// else the document type's, else 0.
  virtual std::int32_t GetDefaultAcctID(const std::string& sDsn, std::int32_t ItemClassID,
                                        std::int32_t ItemID, std::int32_t ClassTypeID) = 0;

  /// The date for new documents: the server's date and time while today lies in the
  /// current AR/AP period, else that period's last day. Fallback when it cannot be
  /// found out: today at midnight by this machine's clock. Votes on the transaction.
  virtual collections::Date GetCurFincDate(const std::string& sDsn, bool bArp = true) = 0;

 protected:
  ~_clsPublic() = default;
};

}  // namespace velmora
