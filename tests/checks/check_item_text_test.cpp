#include "checks/closing/check_item_text.h"

#include <gtest/gtest.h>

#include "error_of.h"
#include "scripted_database.h"

namespace velmora::closing {
namespace {

ado::RecordsetRef finding() {
  return ado::Recordset::fromRowset(
      rowset({"FType", "FBillNo", "FErrInfo", "FID", "FNull"},
             {"应收单", "AR0001", "单据没有审核", 12, collections::Null{}}));
}

TEST(TaggedValue, IsATextOrAColumn) {
  const auto rows = finding();
  for (const auto& [tagged, value] :
       {std::pair{"0|单据审核检查", "单据审核检查"}, std::pair{"0| kept ", " kept "},
        std::pair{"0|a|b", "a"}, std::pair{"0", ""}, std::pair{"", ""},
        std::pair{"x|not a number is 0", "not a number is 0"}, std::pair{"1| FBillNo ", "AR0001"},
        std::pair{"2|fid", "12"}, std::pair{"0.5|FType", "应收单"}})
    EXPECT_EQ(taggedValue(tagged, *rows), value) << tagged;
  EXPECT_EQ(errorOf([&] { taggedValue("1|FGone", *rows); }).number(), com::error::kAdoItemNotFound);
}

TEST(FilledMessage, ReplacesOneColumnAfterTheOther) {
  const auto rows = finding();
  for (const auto& [message, text] :
       {std::pair{"%1[%2]:%3|FType,FBillNo,FErrInfo", "应收单[AR0001]:单据没有审核"},
        std::pair{"账款的退票凭证还未生成", "账款的退票凭证还未生成"},
        std::pair{"%1 stays|", "%1 stays"}, std::pair{"%1 and %1| FID ", "12 and 12"},
        std::pair{"%10|FID", "120"}, std::pair{"%2|FType,FBillNo|FErrInfo", "AR0001"}})
    EXPECT_EQ(filledMessage(message, *rows), text) << message;
}

TEST(FilledMessage, WorksOnWhatTheColumnBeforeLeft) {
  const auto rows = ado::Recordset::fromRowset(rowset({"A", "B"}, {"<%2|%1>", "b"}));
  EXPECT_EQ(filledMessage("%1 %2|A,B", *rows), "<b|%1> b");
}

TEST(FilledMessage, NeedsEveryColumn) {
  const auto rows = finding();
  const auto null = errorOf([&] { filledMessage("%1|FNull", *rows); });
  EXPECT_EQ(null.number(), com::error::kInvalidUseOfNull);
  EXPECT_NE(null.description().find("FNull"), std::string::npos);
  EXPECT_EQ(errorOf([&] { filledMessage("%1|FType,FGone", *rows); }).number(),
            com::error::kAdoItemNotFound);
}

}  // namespace
}  // namespace velmora::closing
