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
      "CheckInitData(sDsn string, dFilter Dictionary, inout rsReturn object) boolean\n"
      "GetClosingAmtCheck(sDsn string, inout dFilter Dictionary) object\n"
      "GetInitAmtCheck(sDsn string, inout dFilter Dictionary) object\n"
      "GetClosingCheckDataSql(inout dFilter Dictionary) boolean\n"
      "GetAmtCheckDataSql(inout dFilter Dictionary) boolean\n"
      "CheckClosingData(sDsn string, dOption Dictionary, inout rsReturn object, inout bCanClose "
      "boolean) boolean\n"
      "GetUnVchExtBillStr(dFilter Dictionary) string\n"
      "GetUnVchBillStr(dFilter Dictionary) string\n"
      "GetData(sDsn string, sSql string) Recordset\n"
      "GetCheckItemDict(sDsn string, dFilter Dictionary) object\n"
      "GetUnVchInvoiceStr(inout dFilter Dictionary) string\n"
      "GetUnAccountArpBillStr(inout dFilter Dictionary) string\n"
      "GetUnVchArpBillStr(inout dFilter Dictionary) string\n"
      "GetUnAuditArpBillStr(inout dFilter Dictionary) string\n"
      "GetNoBillVoucherStr(inout dFilter Dictionary) string\n"
      "clsCheck Velmora.clsCheck 9EAD2186-8B21-48E3-9CC8-F423F086C69B "
      "21B385C4-C72B-4A28-8E96-56D19CF6EDC7\n"
      "IsCanChangePeriod(sDsn string, inout sReturnMsg string, lYear 32-bit integer, lPeriod "
      "32-bit integer, "
      "dOldBeginDate date, dOldEndDate date, dNewBeginDate date, dNewEndDate date) boolean\n"
      "CheckValidAccount(sDsn string, lClassTypeID 32-bit integer = 0) object\n"
      "clsPublic Velmora.clsPublic A5A4CFB3-75C3-4EBD-9FFC-B20F2D1804AE "
      "6387F950-2127-4741-8A4F-F0D2D7AD90B5\n"
      "AmtSettlement(sDsn string, inout rsSrcBill Recordset, inout rsDestBill Recordset, inout "
      "rsChkInfo Vector, lCheckAmtFor 32-bit integer = 0, lCheckWithQty 32-bit integer = 0, "
      "dDictSwitch Dictionary "
      "= nothing) boolean\n"
      "GetSwitchData(inout rsEntry Recordset, vOption Vector, inout strErrMsg string, dFilter "
      "Dictionary = nothing) boolean\n"
      "GetSwitchDataExt(sDsn string, inout rsEntry Recordset, inout vOption Vector, dFilter "
      "Dictionary, inout strErrMsg string) boolean\n"
      "GetSwitchVectData(inout rsEntry Vector, vOption Vector, inout strErrMsg string) boolean\n"
      "GetData(sDsn string, sSql string) Recordset\n"
      "WriteCheckInfoByVector(rs Vector, sFileName string) boolean\n"
      "WriteCheckInfoByRs(rs Recordset, sFileName string) boolean\n"
      "GetDefaultAcctID(sDsn string, ItemClassID 32-bit integer, ItemID 32-bit integer, "
      "ClassTypeID 32-bit integer) 32-bit integer\n"
      "GetCurFincDate(sDsn string, bArp boolean = True) date\n");
}

TEST(Catalogue, LooksAtTheArgumentsFirst) {
  const auto object = publicClasses().front().create();
  const auto error =
      errorOf([&] { com::call(*object, "CheckInitData", "", collections::DictionaryRef(), 0); });
  EXPECT_EQ(error.number(), com::error::kTypeMismatch);
}

}  // namespace
}  // namespace velmora
