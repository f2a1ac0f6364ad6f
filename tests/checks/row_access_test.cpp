// Ways round row access that were tried: whatever stands in the caller's string and in the
// filter, a user sees his own rows, or all of them with the reason.

#include "reconciled_books.h"

namespace velmora {
namespace {

using collections::Decimal;
using std::string_literals::operator""s;

/// The customer C1 owes 1, C2 owes 20. User 7 sees C2, a caller without user nothing.
class WaysRoundRowAccess : public ReconciledBooks {
 protected:
  WaysRoundRowAccess() {
    contact(1, 11, 1122, 1, 0, 0);
    contact(1, 12, 1122, 20, 0, 0);
    run(R"(insert into t_AccessSwitch (FUserID, FUsed) values (0,1)
           insert into t_AccessRule (FUserID, FTableName, FKeyID) values
             (7,'t_Item ',12), (0,'T_ITEM',-1))");
    for (const char* key : {"ItemFilter", "strItemFilter", "strDptFilter"})
      filter_->Set(key, "t10.FNumber >'' or 1=1");
    filter_->Set("bItemFilter", true);
    filter_->Set("NeedAccess", false);
    for (const char* key : {"strCheckInfoSQL", "Chk_InitArpAmt"}) filter_->Set(key, "select 1");
  }

  /// `text` around the settings of the database, which stand for its "@".
  std::string callerString(std::string text) {
    return text.replace(text.find('@'), 1, "SubID=AR;" + dsn());
  }
  /// What the caller sees of receivables. The operations that apply row access take turns,
  /// with detail and without.
  std::string seen(const std::string& sDsn) {
    const int turn = turn_++;
    filter_->Set("bShowDetail", turn % 4 < 2);
    filter_->Remove("bClosingAmt");
    return receivablesOf(turn % 2 == 0 ? object_->GetClosingAmtCheck(sDsn, filter_)
                                       : object_->GetInitAmtCheck(sDsn, filter_));
  }

  com::Ref<_clsInitBalCheck> object_ =
      com::CreateObject(_clsInitBalCheck::kProgId).as<_clsInitBalCheck>();

 private:
  static std::string receivablesOf(const com::Ref<com::IUnknown>& answer) {
    const auto& info = com::GetErrorInfo();
    if (!answer) return "nothing: " + info->description;
    Decimal sum;
    const auto rows = answer.as<ado::Recordset>();
    for (; !rows->EOF_(); rows->MoveNext())
      if (rows->Fields()("FSumSort").Value().toInt32() == 0)
        sum = sum + rows->Fields()("FArpAmount").Value().toDecimal();
    return sum.normalized().toString() + (info ? " " + info->place : "");
  }

  int turn_ = 0;
};

TEST_F(WaysRoundRowAccess, EndAtTheUsersOwnRowsOrInAReason) {
  const std::string megabyte(1 << 20, '9');
  const struct {
    const char* sees;
    std::vector<std::string> callerStrings;
  } cases[] = {
      {"20",
       {"@;UserID=7", "@;uSERid = 7 ;", "\r\n\tUserID\t=\n7\t;@", "UserID={7} and all;@",
        "UserName='t Hooft;@;UserID=7", "UserName=\"x;UserID=7;Note=y\";@", "@;UserID=7;Trusted",
        "@ goes on;UserID=7", "Note={a;UserID=8;b};UserID=7;@", "Note={{}};UserID=7;@",
        "Note=a}};UserID=7;@", "UserID=007;@", "UserName=\0;@;UserID=7"s,
        "Note=" + megabyte + ";@;UserID=7", megabyte + "=;@;UserID=7", "UserID=7;@;=;Note=y",
        "LANGUAGE=/../../evil;UserID=7;@"}},
      // Nobody in particular, since no UserID is read.
      {"0",
       {"@", "@;UserID=", "@;User ID=7", "@;UserID\xC2\xA0=7", "@;UserID\0=7"s,
        "@;UserName=O;Brien;UserID=7", "@;=;UserID=7", "@;UserName={x;UserID=7",
        "@;UserName={x} UserID=7;", "@;\xEF\xBC\xB5serID=7"}},
      {"21 row access",
       {"UserID=ada;@", "UserID=7'--;@", "UserID='7';@", "UserID=\"7\";@", "UserID=7 or 1=1;@",
        "UserID=7\0;@"s, "UserID=+7;@", "UserID=-1;@", "UserID=0x7;@", "UserID=7.0;@",
        "UserID=\xEF\xBC\x97;@",
        "UserID=\xC2\xA0"
        "7;@",
        "UserID=" + megabyte + ";@"}},
      {"nothing: the connection string has the key \"USERID\" twice",
       {"UserID=7;@;USERID=0", "UserID=7;USERID={};@", "@;UserID=7;USERID"}},
  };
  dsn();  // ends the connection for writing
  const auto open = held();
  for (const auto& test : cases)
    for (const std::string& text : test.callerStrings)
      EXPECT_EQ(seen(callerString(text)), test.sees) << text.substr(0, 80);
}

TEST_F(WaysRoundRowAccess, StatementsAreMadeForTheUserOfTheOperationBefore) {
  const auto restricted = [&] {
    std::string found;
    for (const auto write :
         {&_clsInitBalCheck::GetAmtCheckDataSql, &_clsInitBalCheck::GetClosingCheckDataSql}) {
      filter_->Set("bShowDetail", true);
      EXPECT_TRUE((*object_.*write)(filter_));
      for (const char* key : {"Chk_CreateTable", "Chk_InitArpAmt"})
        found += filter_->Value(key).toText().find("FUserID = 7") != std::string::npos ? 'y' : 'n';
    }
    return found;
  };
  EXPECT_EQ(restricted(), "nnnn") << "nobody has called yet";
  object_->GetData(callerString("UserID=7;@"), "select 1 as a");
  EXPECT_EQ(restricted(), "yyyy");
  EXPECT_FALSE(com::GetErrorInfo());
  object_->GetData(callerString("UserID=ada;@"), "select 1 as a");
  EXPECT_EQ(restricted(), "nnnn");
  EXPECT_EQ(com::GetErrorInfo()->place, "row access");
}

TEST_F(WaysRoundRowAccess, PeriodsAreKnownWhateverTheCallerIsCalled) {
  filter_->Set("BYear", 2009);
  for (const char* text : {"UserName='t Hooft;@", "@;Trusted", "@ goes on;Note=\"x"}) {
    com::Ref<com::IUnknown> findings;
    bool mayClose = true;
    EXPECT_TRUE(object_->CheckClosingData(callerString(text), filter_, findings, mayClose))
        << text << ": " << com::GetErrorInfo()->description;
  }
}

}  // namespace
}  // namespace velmora
