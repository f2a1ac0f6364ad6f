// The account proposed for an item on a document.

#include "settlement/default_account.h"

#include <gmock/gmock.h>

#include "account_set.h"
#include "answered.h"
#include "frame/classes.h"
#include "scripted_database.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/public.h"

namespace velmora::settlement {
namespace {

class DefaultAccount : public AccountSet {
 protected:
  DefaultAccount() {
    run("delete from t_ItemClass delete from t_rp_BillType");
    plant("t_ItemClass", "FItemClassID, FNumber, FName, FSqlTableName",
          "(1,'001','客户','t_Organization'),(8,'008','供应商','t_Supplier'),(3,'003','职员','')");
    plant("t_Organization", "FItemID, FNumber, FName, FARAccountID, FPreAcctID, FPreArAcctID",
          "(10,'01','甲',1122,2203,9),(11,'02','乙',0,null,null)");
    plant("t_Supplier", "FItemID, FNumber, FName, FOtherArAcctID, FPreAcctID, FPreArAcctID",
          "(20,'01','丙',1221,1123,1124)");
    plant("t_rp_BillType", "FID, FName, FAccountID",
          "(1000000,'a',55),(1000014,'b',56),(1000099,'c',57)");
  }
  std::int32_t account(std::int32_t itemClass, std::int32_t item, std::int32_t classType) {
    const auto object = com::CreateObject(_clsPublic::kProgId).as<_clsPublic>();
    const std::int32_t found = object->GetDefaultAcctID(dsn(), itemClass, item, classType);
    EXPECT_FALSE(com::GetErrorInfo()) << reason().description;
    return found;
  }

  com::ScopedClass class_{publicClasses()[2]};
};

TEST_F(DefaultAccount, IsTheItemsOwnElseTheDocumentTypes) {
  const auto held = this->held();
  EXPECT_EQ(account(1, 10, 1000000), 1122);
  EXPECT_EQ(account(1, 11, 1000000), 55) << "the item has none";
  EXPECT_EQ(account(1, 12, 1000000), 55) << "no such item";
  EXPECT_EQ(account(3, 10, 1000000), 55) << "items of that class have no table";
  EXPECT_EQ(account(2, 10, 1000000), 55) << "no such class";
  EXPECT_EQ(account(1, 10, 1000014), 2203);
  EXPECT_EQ(account(1, 11, 1000014), 56) << "Null";
  EXPECT_EQ(account(8, 20, 1000014), 1124);
  EXPECT_EQ(account(8, 20, 1000015), 1221);
  EXPECT_EQ(account(1, 10, 1000099), 57) << "a type that items have no account for";
  EXPECT_EQ(account(1, 10, 1), 0);
}

TEST_F(DefaultAccount, IsNoneWithoutTheContactTable) {
  run("drop table t_rp_Contact");
  EXPECT_EQ(account(1, 11, 1000000), 0);
}

TEST(DefaultAccountFailure, AnswersNoneAndTellsWhy) {
  const com::ScopedClass offered{publicClasses()[2]};
  ScriptedDatabase database;
  database.fail("from t_itemclass", "server is down");
  const auto object = com::CreateObject(_clsPublic::kProgId).as<_clsPublic>();
  EXPECT_EQ(object->GetDefaultAcctID(kScriptedDsn, 1, 10, 1000000), 0);
  EXPECT_EQ(reason().description, "server is down");
  EXPECT_EQ(database.open, 0);
  EXPECT_EQ(object->GetDefaultAcctID("A=1", 1, 10, 1000000), 0);
  EXPECT_THAT(reason().description, testing::HasSubstr("ConnectString"));
}

TEST(AccountFieldName, DependsOnTheSideOfAnAdvanceOnly) {
  EXPECT_EQ(GetAccountFieldName(1000521, 8), "FpreAcctID");
  EXPECT_EQ(GetAccountFieldName(1000521, 1), "FPreApAcctID");
  EXPECT_EQ(GetAccountFieldName(1000511, 8), "FOtherApAcctID");
  EXPECT_EQ(GetAccountFieldName(1000503, 1), "FApAccountID");
  EXPECT_EQ(GetAccountFieldName(0, 1), "");
}

}  // namespace
}  // namespace velmora::settlement
