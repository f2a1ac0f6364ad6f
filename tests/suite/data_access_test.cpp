#include <gtest/gtest.h>

#include "account_set.h"
#include "error_of.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"
#include "velmora/com/class_table.h"

namespace velmora::suite {
namespace {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::Vector;
using collections::VectorRef;

DictionaryRef bag(std::initializer_list<std::pair<const char*, Variant>> entries) {
  auto made = com::make<Dictionary>();
  for (const auto& [key, value] : entries) made->Set(key, value);
  return made;
}

VectorRef list(std::initializer_list<DictionaryRef> entries) {
  auto made = com::make<Vector>();
  for (const auto& entry : entries) made->Add(entry);
  return made;
}

DictionaryRef column(const char* table, const char* alias, const char* key,
                     const char* billAlias = "", const char* billColumn = "") {
  return bag({{"DataTable", table},
              {"DataTableAs", alias},
              {"DataCol", key},
              {"BillTableAs", billAlias},
              {"BillCol", billColumn}});
}

class DataAccess : public AccountSet {
 protected:
  template <class... Arguments>
  Variant ask(const char* operation, Arguments... arguments) {
    return com::call(*service_, operation, arguments...);
  }
  bool isUsed(int user) { return ask("IsUsed", dsn(), user).toBool(); }

  DictionaryRef rowAccessInfo(int user, std::initializer_list<const char*> names) {
    auto tables = com::make<Vector>();
    for (const char* const name : names) tables->Add(bag({{"Table", name}}));
    return ask("GetRowAccessInfo2", dsn(), user, tables).toObject<Dictionary>();
  }
  DictionaryRef sql(const VectorRef& columns, const DictionaryRef& info) {
    return ask("GetAccessDataSQL", columns, info).toObject<Dictionary>();
  }
  /// The numbers in the first column of a query over the account set.
  std::string numbers(const std::string& query) {
    std::string answer;
    for (const auto rows = held()->Execute(query); !rows->EOF_(); rows->MoveNext())
      answer += (answer.empty() ? "" : " ") + rows->GetValue(0).toText();
    return answer;
  }

 private:
  com::Ref<com::IDispatch> service_ = com::CreateObject("TirnBase.DataAccess");
};

TEST_F(DataAccess, IsUsedByTheUsersOwnSwitchElseByEveryonesElseNot) {
  EXPECT_FALSE(isUsed(7)) << "no switch at all";
  plant("t_AccessSwitch", "FUserID, FUsed", "(0,1), (7,0), (8,1)");
  EXPECT_FALSE(isUsed(7));
  EXPECT_TRUE(isUsed(8));
  EXPECT_TRUE(isUsed(9));
  EXPECT_TRUE(isUsed(0));
  run("drop table t_AccessSwitch");
  EXPECT_FALSE(isUsed(8)) << "an account set without row access";
}

TEST_F(DataAccess, KnowsTheTablesThatHaveRulesForTheUser) {
  plant("t_AccessRule", "FUserID, FTableName, FKeyID",
        "(7,'t_Item',1), (7,'t_Item',2), (7,'t_Emp',-1), (8,'t_Currency',1)");
  const auto info = rowAccessInfo(7, {"t_item", "t_currency"});
  const auto restricted = info->Value("AccessInfo").toObject<Dictionary>();
  EXPECT_TRUE(restricted->Lookup("T_ITEM"));
  EXPECT_FALSE(restricted->Lookup("t_emp")) << "not asked for";
  EXPECT_FALSE(restricted->Lookup("t_currency")) << "another user's";
}

TEST_F(DataAccess, ReturnsThePermittedRows) {
  plant("t_Item", "FItemID, FItemClassID, FNumber", "(1,1,'A'), (2,1,'B'), (3,1,'C'), (9,2,'D')");
  plant("t_Department", "FItemID, FNumber", "(9,'D'), (10,'E')");
  plant("t_rp_ContactBal", "FYear, FPeriod, FRP, FCustomer, FDepartment, FDebit",
        "(2009,1,1,1,9,10), (2009,1,1,2,10,20), (2009,1,1,2,0,40), (2009,1,1,3,9,80)");
  const auto rule = [this](const char* rows) {
    run("delete from t_AccessRule");
    plant("t_AccessRule", "FUserID, FTableName, FKeyID", rows);
  };
  const auto balances = [this] {
    const auto texts = sql(list({column("t_item", "t13", "FItemID", "v1", "FCustomer"),
                                 column("t_Department", "t11", "FItemID", "v1", "FDepartment")}),
                           rowAccessInfo(7, {"t_item", "t_department"}));
    std::string query = "select v1.FDebit from t_rp_ContactBal v1";
    if (const std::string from = texts->Value("From").toText(); !from.empty())
      query += from + "where v1.FYear = 2009 and " + texts->Value("Where").toText();
    return numbers(query + " order by v1.FDebit");
  };
  const auto items = [this] {
    const auto texts = sql(list({column("t_item", "z", "FItemID")}), rowAccessInfo(7, {"t_item"}));
    return numbers("select z.FItemID from t_item z " + texts->Value("From").toText() + "where " +
                   texts->Value("Where").toText() + " order by 1");
  };
  rule("(8,'t_Item',1)");
  EXPECT_EQ(balances(), "10 20 40 80") << "no rules for this user";
  rule("(7,'t_Item',1), (7,'t_Item',2), (8,'t_Item',3)");
  EXPECT_EQ(balances(), "10 20 40");
  EXPECT_EQ(items(), "1 2");
  rule("(7,'t_Item',2), (7,'t_Item',3), (7,'t_Department',9)");
  EXPECT_EQ(balances(), "40 80") << "a balance of no department belongs to none he may not see";
  rule("(7,'t_Item',-1)");
  EXPECT_EQ(balances(), "");
  EXPECT_EQ(items(), "");
}

TEST_F(DataAccess, RestrictsNothingWithoutRowAccessInformation) {
  const auto texts = sql(list({column("t_item", "z", "FItemID")}), nullptr);
  EXPECT_EQ(texts->Value("From"), Variant(""));
  EXPECT_EQ(texts->Value("Where"), Variant(""));
}

TEST_F(DataAccess, TakesNamesOnlyIntoTheSql) {
  const auto info = bag({{"UserID", 7}, {"AccessInfo", bag({{"t_item", true}})}});
  for (const auto& [request, named] :
       {std::pair{column("t_item; drop table x", "z", "FItemID"), "DataTable"},
        {column("t_item", "1z", "FItemID"), "DataTableAs"},
        {column("t_item", "z", ""), "DataCol"},
        {column("t_item", "z", "FItemID", "v1 ", "FCustomer"), "BillTableAs"},
        {column("t_item", "z", "FItemID", "v1", "1=1 or x"), "BillCol"}}) {
    const auto error = errorOf([&, wanted = request] { sql(list({wanted}), info); });
    EXPECT_EQ(error.number(), com::error::kInvalidArgument);
    EXPECT_TRUE(error.description().starts_with(std::string(named) + " of")) << error.description();
  }
  EXPECT_EQ(errorOf([&] { sql(list({nullptr}), info); }).number(), com::error::kInvalidArgument);
}

TEST(SecurityInfo, ReadsTheUserOfTheCallersString) {
  const auto service = com::CreateObject("TirnBase.SecurityInfo");
  const auto user = [&](const char* text) {
    return com::call(*service, "GetCurrentUserID", text).toInt32();
  };
  EXPECT_EQ(user("SubID=AR;userid=16394;ConnectString={Provider=x}"), 16394);
  EXPECT_EQ(user("UserID=;SubID=AR"), 0);
  EXPECT_EQ(user("SubID=AR"), 0);
  for (const char* const text : {"UserID=ada", "UserID=7 or 1", "UserID=-1", "UserID=2147483648"})
    EXPECT_EQ(errorOf([&] { user(text); }).number(), com::error::kInvalidArgument) << text;
}

using OtherSettings = AccountSet;

TEST_F(OtherSettings, AreReadByCategoryAndKey) {
  plant("t_SystemProfile", "FCategory, FKey, FValue",
        "('IC','MakeZanGuVoucher','1'), ('GL','Closed',null)");
  const auto service = com::CreateObject("tirnarSystem.SystemProfile");
  const auto setting = [&](const char* category, const char* key) {
    return com::call(*service, "GetSysProfile", dsn(), category, key, 0);
  };
  EXPECT_EQ(setting("IC", "MakeZanGuVoucher"), Variant("1"));
  EXPECT_TRUE(setting("GL", "Closed").isNull());
  EXPECT_EQ(setting("GL", "MakeZanGuVoucher"), Variant(0));
}

}  // namespace
}  // namespace velmora::suite
