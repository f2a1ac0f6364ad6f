// Which customers, suppliers and other items lack valid accounts, and what a failure
// leaves.

#include <gmock/gmock.h>

#include "account_set.h"
#include "answered.h"
#include "frame/classes.h"
#include "late_bound.h"
#include "scripted_database.h"
#include "velmora/com/context.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::vector<std::string> kPartnerAccounts = {"FARAccountID",   "FPreAcctID",
                                                   "FPayTaxAcctID",  "FOtherArAcctID",
                                                   "FOtherApAcctID", "FAPAccountID"};
const std::vector<std::string> kItemAccounts = {"FPreArAcctID", "FPreApAcctID", "FOtherArAcctID",
                                                "FOtherApAcctID"};

/// One customer, supplier, department and employee, each with all accounts in order:
/// 1122 is controlled, 2221 is not.
class AccountCheck : public AccountSet {
 protected:
  AccountCheck() {
    profile("FCheckAccount", "1");
    plant("t_Account", "FAccountID, FNumber, FControlSystem",
          "(1122,'1122',1), (2221,'2221',0), (2222,'2222',null)");
    plant("t_ItemClass", "FItemClassID, FName, FName_CHT, FName_EN, FSqlTableName",
          "(1,'客户','客戶','Customer','t_Organization'), (2,'部门','部門','Department',"
          "'t_Department'), (3,'职员','職員','Employee','t_Emp'), (4,'物料','物料','Material',''),"
          "(8,'供应商','供應商','Supplier','t_Supplier')");
    for (const char* table : {"t_Organization", "t_Supplier"})
      plant(table, "FItemID, FNumber, FName, FPreArAcctID, FPreApAcctID, " + list(kPartnerAccounts),
            "(7,'N7','甲公司',1122,1122,1122,1122,2221,1122,1122,1122)");
    for (const char* table : {"t_Department", "t_Emp"})
      plant(table, "FItemID, FNumber, FName, " + list(kItemAccounts),
            "(7,'N7','甲公司',1122,1122,1122,1122)");
    com::GetObjectContext().reset();
  }

  static std::string list(const std::vector<std::string>& columns) {
    std::string text;
    for (const std::string& column : columns) text += (text.empty() ? "" : ", ") + column;
    return text;
  }
  ado::RecordsetRef check(const std::string& dsn, std::int32_t classType = 0) {
    auto found = object_->CheckValidAccount(dsn, classType).as<ado::Recordset>();
    EXPECT_EQ(com::GetObjectContext().vote(), found ? com::Vote::complete : com::Vote::abort);
    EXPECT_EQ(com::GetErrorInfo().has_value(), !found);
    return found;
  }
  /// The findings as "number severity|info|class".
  std::vector<std::string> findings(const std::string& more = {}) {
    std::vector<std::string> lines;
    const auto rows = answered(check(dsn(more)));
    for (; !rows->EOF_(); rows->MoveNext())
      lines.push_back(rows->GetValue(0).toText() + ' ' + rows->GetValue(1).toText() + '|' +
                      rows->GetValue(2).toText() + '|' + rows->GetValue(3).toText());
    return lines;
  }
  void set(const std::string& table, const std::string& column, const std::string& value) {
    run("update " + table + " set " + column + " = " + value + " where FItemID = 7");
  }

  com::ScopedClass class_{publicClasses()[1]};
  com::Ref<_clsCheck> object_ = com::CreateObject(_clsCheck::kProgId).as<_clsCheck>();
};

TEST_F(AccountCheck, FindsNothingWhereAllAccountsAreInOrder) {
  const auto rows = check(dsn());
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->RecordCount(), 0);
  std::string columns;
  for (std::size_t i = 0; i < rows->fieldCount(); ++i)
    columns += rows->definition(i).name + ' ' + std::to_string(rows->definition(i).type) + ' ' +
               std::to_string(rows->definition(i).definedSize) + ' ';
  EXPECT_EQ(columns, "FID 3 4 FErrType 202 300 FErrInfo 202 300 FKey 202 100 ");
}

TEST_F(AccountCheck, ExaminesTheAccountsOfEachClass) {
  struct Class {
    const char *name, *table;
    std::vector<std::string> examined;
    std::string notExamined;
  };
  auto customer = kPartnerAccounts, supplier = kPartnerAccounts;
  customer.emplace_back("FPreArAcctID");
  supplier.emplace_back("FPreApAcctID");
  std::vector<std::string> expected;
  for (const Class& c :
       {Class{"客户", "t_Organization", customer, "FPreApAcctID"},
        Class{"部门", "t_Department", kItemAccounts, ""}, Class{"职员", "t_Emp", kItemAccounts, ""},
        Class{"供应商", "t_Supplier", supplier, "FPreArAcctID"}}) {
    int id = 100;
    // A record that has `value` as its account `column` and is in order otherwise.
    const auto add = [&](const std::string& column, const std::string& value) {
      const std::string number = "'" + column + ' ' + value + "'";
      std::string columns = "FItemID, FNumber", values = std::to_string(++id) + ',' + number;
      for (const std::string& other : c.examined) {
        columns += ", " + other;
        values += other == column ? "," + value : ",1122";
      }
      if (!c.notExamined.empty()) {
        columns += ", " + c.notExamined;
        values += c.notExamined == column ? "," + value : ",1122";
      }
      plant(c.table, columns, "(" + values + ")");
    };
    const auto expect = [&](const std::string& column, const std::string& value,
                            const char* finding) {
      expected.push_back(std::to_string(expected.size() + 1) + " 警告错误|表 " + c.name + "-数据 " +
                         column + ' ' + value + "() " + finding + '|' + c.name);
    };
    for (const std::string& column : c.examined)
      for (const char* value : {"0", "null", "2221", "2222", "9999"}) add(column, value);
    if (!c.notExamined.empty()) add(c.notExamined, "0");
    for (const std::string& column : c.examined)
      for (const char* value : {"0", "null"}) expect(column, value, "没有维护应收应付科目数据");
    for (const std::string& column : c.examined)
      if (column != "FPayTaxAcctID")
        for (const char* value : {"2221", "2222", "9999"})
          expect(column, value, "应收应付科目数据不正确，应该选择受控属性的科目。");
  }
  EXPECT_EQ(findings(), expected);
}

TEST_F(AccountCheck, ChecksTheControlAttributeOnlyWhenDemanded) {
  set("t_Supplier", "FAPAccountID", "2221");
  for (const auto& [setting, count] : {std::pair{"1", 1U}, std::pair{" 1 ", 1U}, std::pair{"0", 0U},
                                       std::pair{"2", 0U}, std::pair{"", 0U}}) {
    profile("FCheckAccount", setting);
    EXPECT_THAT(findings(), testing::SizeIs(count)) << setting;
  }
  for (const char* change : {"update t_RP_SystemProfile set FValue = null where FKey = "
                             "'FCheckAccount'",
                             "delete from t_RP_SystemProfile"}) {
    run(change);
    EXPECT_THAT(findings(), IsEmpty()) << change;
  }
}

TEST_F(AccountCheck, NumbersTheFindingsOfARecordThrough) {
  set("t_Organization", "FARAccountID", "2221");
  set("t_Organization", "FAPAccountID", "0");
  set("t_Supplier", "FAPAccountID", "0");
  plant("t_Emp", "FItemID, FNumber", "(0,'*'), (8,null)");
  EXPECT_THAT(findings(),
              ElementsAre(AllOf(HasSubstr("1 警告"), HasSubstr("没有维护"), HasSubstr("|客户")),
                          AllOf(HasSubstr("2 警告"), HasSubstr("不正确")),
                          HasSubstr("3 警告错误|表 职员-数据 () 没有维护"),
                          AllOf(HasSubstr("4 警告"), HasSubstr("|供应商"))))
      << "employee 0 stands for none";
}

TEST_F(AccountCheck, TakesTheItemClassesThatTheSettingsName) {
  run("create table t_Item_3002 (FItemID int, FNumber varchar(80), FName nvarchar(255), "
      "FPreArAcctID int, FPreApAcctID int, FOtherArAcctID int, FOtherApAcctID int)");
  plant("t_Item_3001", "FItemID, FNumber", "(1,'G1')");
  plant("t_Item_3002", "FItemID, FNumber", "(2,'X2')");
  plant("t_ItemClass", "FItemClassID, FName, FSqlTableName",
        "(3001,'股东','t_Item_3001'), (3002,'项目','t_Item_3002'), (3003,'其他','t_Item_3001')");
  EXPECT_THAT(findings(), IsEmpty()) << "no setting names them";
  for (const char* key : {"FItemClassAR3001", "FItemClassAP3002", "FItemClassName",
                          "FItemClassAR3003 or 1=1", "FItemClassAR99999999999"})
    profile(key, "");
  EXPECT_THAT(findings(), ElementsAre(HasSubstr("表 股东-数据 G1() 没有维护"),
                                      HasSubstr("表 项目-数据 X2() 没有维护")));
}

TEST_F(AccountCheck, ReportsATableThatCannotBeAskedAndGoesOn) {
  run("drop table t_Department; update t_ItemClass set FSqlTableName = 't_PeriodDate' where "
      "FItemClassID = 3; update t_ItemClass set FSqlTableName = 't_Emp' where FItemClassID = 1");
  set("t_Supplier", "FAPAccountID", "0");
  EXPECT_THAT(findings(), ElementsAre("1 严重错误|表 客户 缺少必要的应收应付科目字段|客户",
                                      "2 严重错误|表 部门 缺少必要的应收应付科目字段|部门",
                                      "3 严重错误|表 职员 缺少必要的应收应付科目字段|职员",
                                      HasSubstr("4 警告错误|表 供应商-数据 N7")));
}

TEST_F(AccountCheck, AnswersNoRowsForAClassType) {
  ScriptedDatabase database;
  const auto rows = check(kScriptedDsn, 5);
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->RecordCount(), 0);
  EXPECT_THAT(database.statements, Not(Contains(HasSubstr("t_"))));
  EXPECT_EQ(database.open, 0);
}

TEST_F(AccountCheck, TellsInTheCallersLanguage) {
  FakeLoader fake{
      {{"警告错误", "Warning"}, {"表 %1-数据 %2(%3) 没有维护应收应付科目数据", "%2 %3 of %1"}}};
  const auto installed = fake.install();
  set("t_Organization", "FARAccountID", "0");
  set("t_Organization", "FName", "N'%1号'");
  EXPECT_THAT(findings("LANGUAGE=CHT;"), ElementsAre("1 Warning|N7 %1号 of 客戶|客戶"));
  EXPECT_THAT(findings("LANGUAGE=EN;"), ElementsAre("1 Warning|N7 %1号 of Customer|Customer"));
  EXPECT_THAT(findings("LANGUAGE=de;"), ElementsAre("1 Warning|N7 %1号 of |"))
      << "no column holds a name in that language";
}

TEST_F(AccountCheck, KeepsLongTextsToTheirColumns) {
  std::string name;
  for (int i = 0; i < 255; ++i) name += "名";
  set("t_Organization", "FARAccountID", "0");
  set("t_Organization", "FName", "N'" + name + "'");
  set("t_Organization", "FNumber", "'" + std::string(80, '7') + "'");
  const auto rows = check(dsn());
  ASSERT_TRUE(rows);
  const std::string text = rows->GetValue(2).toText();
  EXPECT_EQ(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }), 300);
}

TEST_F(AccountCheck, FailsWithTheReason) {
  ScriptedDatabase database;
  database.answer("from t_itemclass", rowset({"FItemClassID", "FName", "FSqlTableName"},
                                             {1, "客户", "t_Organization"}));
  database.answer("FROM sysobjects", rowset({"name", "FFieldName"}, {"t_Organization", ""}));
  Cells columns(kPartnerAccounts.begin(), kPartnerAccounts.end());
  columns.emplace_back("FPreArAcctID");
  database.answer("inner join syscolumns", rowset({"name"}, columns));
  database.fail("from t_Organization t1 ", "deadlock");
  EXPECT_FALSE(check(kScriptedDsn));
  EXPECT_EQ(reason().description, "deadlock");
  EXPECT_EQ(reason().place, "t_Organization");
  EXPECT_EQ(database.open, 0);
  EXPECT_FALSE(check("A=1;A=2"));
}

TEST_F(AccountCheck, AsksForTheRecordsByTheirAccounts) {
  const auto queryFor = [&](std::int32_t itemClass) {
    ScriptedDatabase database;
    database.answer("from t_itemclass",
                    rowset({"FItemClassID", "FName", "FSqlTableName"}, {itemClass, "名", "t_X"}));
    database.answer("FROM sysobjects", rowset({"name", "FFieldName"}, {"t_X", ""}));
    auto columns = kPartnerAccounts;
    columns.insert(columns.end(), kItemAccounts.begin(), kItemAccounts.end());
    database.answer("inner join syscolumns",
                    rowset({"name"}, Cells(columns.begin(), columns.end())));
    database.answer("from t_X t1 ", rowset({"FNumber", "FName"}, {}));
    EXPECT_TRUE(check(kScriptedDsn));
    return database.statements.back();
  };
  EXPECT_EQ(
      queryFor(3),
      "select t1.fitemid, isnull(t1.fnumber,'') as FNumber, isnull(t1.fname,'') as FName, \r\n"
      "isnull(t1.FPreArAcctID,0) as FPreArAcctID, isnull(a2.FControlSystem,0) as "
      "FpreAcctID_Sys, \r\n"
      "isnull(t1.FOtherArAcctID,0) as FOtherArAcctID, isnull(a4.FControlSystem,0) as "
      "FOtherArAcctID_Sys, \r\n"
      "isnull(t1.FOtherAPAcctID,0) as FOtherAPAcctID, isnull(a5.FControlSystem,0) as "
      "FOtherAPAcctID_Sys, \r\n"
      "isnull(t1.FPreApAcctID,0) as FPreApAcctID, isnull(a6.FControlSystem,0) as "
      "FPreApAcctID_Sys\r\n"
      "from t_X t1 \r\n"
      " left join t_account a2 on (t1.FPreArAcctID = a2.FAccountID)\r\n"
      " left join t_account a4 on (t1.FOtherArAcctID = a4.FAccountID)\r\n"
      " left join t_account a5 on (t1.FOtherAPAcctID = a5.FAccountID)\r\n"
      " left join t_account a6 on (t1.FPreApAcctID = a6.FAccountID)\r\n"
      "where ( (isnull(t1.FPreArAcctID,0) = 0 )\r\n"
      "     or isnull(t1.FOtherArAcctID,0) =0 \r\n"
      "     or isnull(t1.FOtherAPAcctID,0) =0 \r\n"
      "     or isnull(t1.FPreApAcctID,0) =0 )\r\n"
      "  and t1.fitemid > 0");
  EXPECT_THAT(queryFor(1), AllOf(HasSubstr("isnull(t1.FPreArAcctID,0) as FPreApAcctID, "
                                           "isnull(a6.FControlSystem,0) as FPreApAcctID_Sys"),
                                 HasSubstr("where (isnull(t1.FARAccountID,0) =0 )\r\n"
                                           "     or (isnull(t1.FpreAcctID,0) =0 )\r\n"),
                                 Not(HasSubstr("fitemid > 0"))));
}

}  // namespace
}  // namespace velmora
