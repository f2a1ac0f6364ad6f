// What the public classes offer by name, written as clients read it.

#include <gtest/gtest.h>
#include <sstream>

#include "error_of.h"
#include "frame/classes.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

std::string describe(const com::MethodInfo& method) {
  std::ostringstream text;
  text << method.name << '(';
  for (const auto& parameter : method.parameters) {
    if (&parameter != &method.parameters.front()) text << ", ";
    text << (parameter.inOut ? "inout " : "") << parameter.name << ' ' << name(parameter.type);
    if (!parameter.optional) continue;
    const auto& fallback = parameter.defaultValue;
    text << " = "
         << (fallback.type() == collections::VarType::object ? "nothing" : fallback.toText());
  }
  text << ") " << name(method.result) << '\n';
  return text.str();
}

std::string describe(const com::TypeInfo& type) {
  std::string text = type.name + ' ' + type.progId + ' ' + type.classId.toString() + ' ' +
                     type.interfaceId.toString() + '\n';
  for (const auto& method : type.methods) text += describe(method);
  return text;
}

TEST(Catalogue, IsWhatClientsWereBuiltAgainst) {
  std::string text;
  for (const auto& entry : publicClasses()) text += describe(entry.create()->GetTypeInfo());
  EXPECT_EQ(
      text,
      "clsInitBalCheck Velmora.clsInitBalCheck B5572962-B9A7-45D3-822F-770550130A28 "
      "63674864-0585-4486-A941-A6C25DDC12F8\n"
      "CheckInitData(sDsn String, dFilter Dictionary, inout rsReturn Object) Boolean\n"
      "GetClosingAmtCheck(sDsn String, inout dFilter Dictionary) Object\n"
      "GetInitAmtCheck(sDsn String, inout dFilter Dictionary) Object\n"
      "GetClosingCheckDataSql(inout dFilter Dictionary) Boolean\n"
      "GetAmtCheckDataSql(inout dFilter Dictionary) Boolean\n"
      "CheckClosingData(sDsn String, dOption Dictionary, inout rsReturn Object, inout bCanClose "
      "Boolean) Boolean\n"
      "GetUnVchExtBillStr(dFilter Dictionary) String\n"
      "GetUnVchBillStr(dFilter Dictionary) String\n"
      "GetData(sDsn String, sSql String) Recordset\n"
      "GetCheckItemDict(sDsn String, dFilter Dictionary) Object\n"
      "GetUnVchInvoiceStr(inout dFilter Dictionary) String\n"
      "GetUnAccountArpBillStr(inout dFilter Dictionary) String\n"
      "GetUnVchArpBillStr(inout dFilter Dictionary) String\n"
      "GetUnAuditArpBillStr(inout dFilter Dictionary) String\n"
      "GetNoBillVoucherStr(inout dFilter Dictionary) String\n"
      "clsCheck Velmora.clsCheck 9EAD2186-8B21-48E3-9CC8-F423F086C69B "
      "21B385C4-C72B-4A28-8E96-56D19CF6EDC7\n"
      "IsCanChangePeriod(sDsn String, inout sReturnMsg String, lYear Int32, lPeriod Int32, "
      "dOldBeginDate Date, dOldEndDate Date, dNewBeginDate Date, dNewEndDate Date) Boolean\n"
      "CheckValidAccount(sDsn String, lClassTypeID Int32 = 0) Object\n"
      "clsPublic Velmora.clsPublic A5A4CFB3-75C3-4EBD-9FFC-B20F2D1804AE "
      "6387F950-2127-4741-8A4F-F0D2D7AD90B5\n"
      "AmtSettlement(sDsn String, inout rsSrcBill Recordset, inout rsDestBill Recordset, inout "
      "rsChkInfo Vector, lCheckAmtFor Int32 = 0, lCheckWithQty Int32 = 0, dDictSwitch Dictionary "
      "= nothing) Boolean\n"
      "GetSwitchData(inout rsEntry Recordset, vOption Vector, inout strErrMsg String, dFilter "
      "Dictionary = nothing) Boolean\n"
      "GetSwitchDataExt(sDsn String, inout rsEntry Recordset, inout vOption Vector, dFilter "
      "Dictionary, inout strErrMsg String) Boolean\n"
      "GetSwitchVectData(inout rsEntry Vector, vOption Vector, inout strErrMsg String) Boolean\n"
      "GetData(sDsn String, sSql String) Recordset\n"
      "WriteCheckInfoByVector(rs Vector, sFileName String) Boolean\n"
      "WriteCheckInfoByRs(rs Recordset, sFileName String) Boolean\n"
      "GetDefaultAcctID(sDsn String, ItemClassID Int32, ItemID Int32, ClassTypeID Int32) Int32\n"
      "GetCurFincDate(sDsn String, bArp Boolean = True) Date\n");
}

TEST(Catalogue, SaysWhatIsNotOfferedYet) {
  const auto object = publicClasses().front().create();
  const auto error =
      errorOf([&] { com::call(*object, "CheckInitData", "", collections::DictionaryRef(), 0); });
  EXPECT_EQ(error.number(), com::error::kTypeMismatch) << "arguments are looked at first";
  const auto check = object.as<_clsInitBalCheck>();
  collections::DictionaryRef filter;
  const auto absent = errorOf([&] { check->GetAmtCheckDataSql(filter); });
  EXPECT_EQ(absent.number(), com::error::kNotImplemented);
  EXPECT_EQ(absent.source(), "clsInitBalCheck");
  EXPECT_EQ(absent.description(), "GetAmtCheckDataSql is not implemented yet");
}

}  // namespace
}  // namespace velmora
