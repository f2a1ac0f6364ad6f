#include "common/access_filters.h"

#include <gmock/gmock.h>

#include "account_set.h"
#include "answered.h"
#include "common/access_requests.h"
#include "frame/call/call_setup.h"
#include "late_bound.h"
#include "velmora/com/error.h"

namespace velmora {
namespace {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::Vector;
using testing::HasSubstr;

/// The services of the platform over an account set of its own, called as user 7.
class RowAccess : public AccountSet {
 protected:
  const CDataSource& source() {
    call_.PrepareDataSource(dsn("UserID=7;"));
    return call_.dataSource();
  }
  std::string itemNumbers(const std::string& query) {
    std::string answer;
    for (const auto rows = held()->Execute(query); !rows->EOF_(); rows->MoveNext())
      answer += rows->GetValue(0).toText();
    return answer;
  }

 private:
  CallSetup call_;
};

TEST_F(RowAccess, SwitchedOffRestrictsNothing) {
  plant("t_AccessRule", "FUserID, FTableName, FKeyID", "(7,'t_Item',1)");
  for (const auto& filter : {DocumentAccessFilter(source()), BalanceAccessFilter(source()),
                             InitDataAccessFilter(source())}) {
    EXPECT_FALSE(filter->Value("NeedAccess").toBool());
    EXPECT_EQ(filter->Value("From"), Variant(""));
    EXPECT_EQ(filter->Value("Where"), Variant(""));
  }
  EXPECT_EQ(BuildAccessSubquery(source(), "t_item", "FItemID", false), "");
  EXPECT_EQ(PermittedItemCondition(source()), "");
  EXPECT_FALSE(com::GetErrorInfo());
}

TEST_F(RowAccess, HoldsQueriesToThePermittedRows) {
  plant("t_AccessSwitch", "FUserID, FUsed", "(7,1)");
  plant("t_Item", "FItemID, FItemClassID, FNumber", "(1,1,'A'), (2,1,'B'), (3,1,'C')");
  plant("t_rp_BegData", "FInterID, FClassTypeID, FType, FRP, FBillNo, FDate, FComID",
        "(1,1,1,1,'A','2009-01-01',1), (2,1,1,1,'B','2009-01-01',2)");
  plant("t_rp_ContactBal", "FYear, FPeriod, FRP, FCustomer", "(2009,1,1,1), (2009,1,1,2)");
  const std::string items = "select t10.FNumber from t_item t10 where t10.FDetail = 1";
  EXPECT_EQ(itemNumbers(items + PermittedItemCondition(source()) + "order by t10.FNumber"), "ABC")
      << "in force, but without rules for him";
  plant("t_AccessRule", "FUserID, FTableName, FKeyID", "(7,'t_Item',2), (7,'t_Item',3)");

  EXPECT_EQ(itemNumbers(items + PermittedItemCondition(source()) + "order by t10.FNumber"), "BC");
  EXPECT_EQ(
      itemNumbers("select t1.FNumber from " + BuildAccessSubquery(source(), "t_item", "", true) +
                  "t1 order by t1.FNumber"),
      "BC");
  const auto initData = InitDataAccessFilter(source());
  ASSERT_TRUE(initData->Value("NeedAccess").toBool());
  EXPECT_EQ(
      itemNumbers("select v1.FBillNo from t_rp_begdata v1" + initData->Value("From").toText() +
                  " where v1.FRP = 1 and " + initData->Value("Where").toText()),
      "B");
  const auto balances = BalanceAccessFilter(source());
  EXPECT_EQ(itemNumbers("create table #amtcheck (FItem int, FSum int default(0)) "
                        "insert into #amtcheck (FItem) values (1) "
                        "insert into #amtcheck (FItem) values (2) "
                        "update v1 set v1.FSum = u1.FSum from #amtcheck v1 inner join (select "
                        "v1.FCustomer, sum(v1.FYear) as FSum from t_rp_contactbal v1" +
                        balances->Value("From").toText() + " where v1.FYear = 2009 and " +
                        balances->Value("Where").toText() +
                        "group by v1.FCustomer) u1 on v1.FItem = u1.FCustomer "
                        "select FItem from #amtcheck where FSum = 2009"),
            "2");
}

TEST_F(RowAccess, AsksForASubqueryAroundTheTable) {
  plant("t_AccessSwitch", "FUserID, FUsed", "(0,1)");
  plant("t_AccessRule", "FUserID, FTableName, FKeyID", "(7,'t_item',2)");
  const std::string query = BuildAccessSubquery(source(), "t_item", "FItemID", false);
  EXPECT_TRUE(query.starts_with("(Select z.FItemID  FROM t_item z  ")) << query;
  EXPECT_THAT(query, HasSubstr(" Where "));
  EXPECT_TRUE(query.ends_with(" ) ")) << query;
  EXPECT_EQ(BuildAccessSubquery(source(), "t_emp", "FItemID", true),
            "(Select z.*  FROM t_emp z  ) ");
}

/// Stand-ins for the two services, to see what they are asked and to answer at will.
class ReplacedServices : public testing::Test {
 protected:
  ReplacedServices() { call_.PrepareDataSource("SubID=AR;UserID=5"); }
  const CDataSource& source() { return call_.dataSource(); }

  static DictionaryRef texts(const char* from, const char* where) {
    auto answer = com::make<Dictionary>();
    answer->Set("From", from);
    answer->Set("Where", where);
    return answer;
  }

  bool used_ = true;
  Variant sql_ = texts(" join r on r.x = b.x ", "r.y = 1");
  std::vector<std::string> asked_;
  com::Ref<Vector> columns_;

 private:
  CallSetup call_;
  com::ScopedClass security_ = standIn("TirnBase.SecurityInfo", [] {
    auto service = com::make<LateBound>();
    service->method("GetCurrentUserID", [](auto) { return Variant(16394); });
    return service;
  });
  com::ScopedClass access_ = standIn("TirnBase.DataAccess", [this] {
    auto service = com::make<LateBound>();
    service->method("IsUsed", [this](auto arguments) {
      asked_.push_back(arguments[0].toText() + "|" + arguments[1].toText());
      return Variant(used_);
    });
    service->method("GetRowAccessInfo2", [](auto arguments) {
      auto restricted = com::make<Dictionary>();
      for (const Variant& table : *answered(arguments[2].template toObject<Vector>()))
        restricted->Set(table.toObject<Dictionary>()->Value("Table").toText(), true);
      auto info = com::make<Dictionary>();
      info->Set("AccessInfo", restricted);
      return Variant(info);
    });
    service->method("GetAccessDataSQL", [this](auto arguments) {
      columns_ = arguments[0].template toObject<Vector>();
      if (sql_.isNull()) throw com::Error(com::error::kFailed, "rules", "no rules server");
      return sql_;
    });
    return service;
  });
};

TEST_F(ReplacedServices, AreAskedAsTheCallingUserForEveryDimension) {
  const auto filter = InitDataAccessFilter(source());
  EXPECT_TRUE(filter->Value("NeedAccess").toBool());
  EXPECT_EQ(filter->Value("Where"), Variant("r.y = 1"));
  EXPECT_THAT(asked_, testing::ElementsAre("SubID=AR;UserID=5|16394"));
  ASSERT_EQ(columns_->Size(), 4U);
  const auto entry = [&](std::size_t row, const char* key) {
    return columns_->Item(row).toObject<Dictionary>()->Value(key).toText();
  };
  EXPECT_EQ(entry(0, "DataTable") + entry(0, "DataTableAs") + entry(0, "BillCol"),
            "t_Departmentt11FDepID");
  EXPECT_EQ(entry(3, "DataTableAs") + entry(3, "DataCol") + entry(3, "BillTableAs"),
            "t14FCurrencyIDv1");
  DocumentAccessFilter(source());
  EXPECT_EQ(entry(2, "BillTableAs") + entry(2, "BillCol"), "bFCustomer");
  EXPECT_EQ(BuildAccessSubquery(source(), "t_item", "FItemID", false),
            "(Select z.FItemID  FROM t_item z   join r on r.x = b.x Where r.y = 1 ) ");
}

TEST_F(ReplacedServices, RestrictOnlyWithBothTexts) {
  sql_ = texts("", "r.y = 1");
  EXPECT_FALSE(BalanceAccessFilter(source())->Value("NeedAccess").toBool());
  sql_ = texts(" join r on 1 = 1 ", "");
  EXPECT_FALSE(BalanceAccessFilter(source())->Value("NeedAccess").toBool());
  sql_ = texts(" ", "r.y = 1");
  EXPECT_EQ(BuildAccessSubquery(source(), "t_emp", "", false),
            "(Select z.FItemID  FROM t_emp z  ) ");
  sql_ = Variant();
  EXPECT_FALSE(BalanceAccessFilter(source())->Value("NeedAccess").toBool());
}

TEST_F(ReplacedServices, AreNotAskedAboutNothing) {
  sql_ = collections::Null{};
  DictionaryRef result;
  for (const auto& none : {com::Ref<Vector>(), com::make<Vector>()}) {
    EXPECT_TRUE(GetAccessFilter(source(), none, none, result));
    EXPECT_FALSE(result->Value("NeedAccess").toBool());
  }
}

TEST_F(ReplacedServices, ThatFailRestrictNothingAndLeaveTheReason) {
  sql_ = collections::Null{};
  com::ClearErrorInfo();
  EXPECT_FALSE(BalanceAccessFilter(source())->Value("NeedAccess").toBool());
  EXPECT_EQ(reason().description, "no rules server");
  DictionaryRef reached;
  EXPECT_FALSE(GetAccessFilter(source(), dimensionTables(), columns_, reached));
  EXPECT_FALSE(reached->Value("NeedAccess").toBool());

  EXPECT_EQ(PermittedItemCondition(source()), "");
  const auto hidden = com::ScopedClass::hidden("TirnBase.SecurityInfo");
  EXPECT_EQ(PermittedItemCondition(source()), "");
  EXPECT_EQ(reason().number, com::error::kCannotCreateObject);
}

}  // namespace
}  // namespace velmora
