#include "common/messages.h"

#include <gtest/gtest.h>

#include "answered.h"
#include "frame/call/loader_slot.h"
#include "late_bound.h"

namespace velmora {
namespace {

TEST(LoadMessage, LeavesSimplifiedChineseAlone) {
  FakeLoader fake;
  const auto installed = fake.install();
  EXPECT_EQ(LoadMessage("严重错误", "chs"), "严重错误");
  EXPECT_EQ(fake.created, 0);
  fake.messages["严重错误"] = "by the loader";
  EXPECT_EQ(LoadMessage("严重错误", "CHS"), "by the loader") << "only lower-case chs is the source";
}

TEST(LoadMessage, AsksTheLoaderAndKeepsTheBlanksAround) {
  FakeLoader fake{{{"没有设置往来科目", "no control account"}, {"", "blank"}}};
  const auto installed = fake.install();
  EXPECT_EQ(LoadMessage("  没有设置往来科目 ", "EN"), "  no control account ");
  EXPECT_EQ(fake.baseName, "Q8ArAp");
  EXPECT_EQ(fake.language, "EN");
  EXPECT_EQ(LoadMessage("\t没有设置往来科目", "EN"), "\t没有设置往来科目")
      << "a tabulator is no blank, so there is no such key";
  EXPECT_EQ(LoadMessage("   ", "EN"), "   blank");
  EXPECT_EQ(LoadMessage("没有这个", "CHT"), "没有这个");
  unloadMessageLoader();
}

TEST(LoadMessage, KeepsOneLoaderAThreadUntilTheNext) {
  FakeLoader fake{{{"a", "b"}}};
  const auto installed = fake.install();
  LoadMessage("a", "EN");
  const auto first = messageLoader();
  EXPECT_TRUE(first);
  LoadMessage("a", "EN");
  EXPECT_TRUE(messageLoader());
  EXPECT_NE(messageLoader(), first);
  EXPECT_EQ(fake.created, 2);
  EXPECT_EQ(fake.unloaded, 0);
  unloadMessageLoader();
  EXPECT_EQ(fake.unloaded, 1);
}

TEST(LoadMessage, NeverFailsAndLeavesAPendingErrorUntouched) {
  const auto hidden = com::ScopedClass::hidden("Q8RESLOADER.Loader");
  com::SetErrorInfo({-7, "caller", "pending", "somewhere"});
  EXPECT_EQ(LoadMessage(" 严重错误", "EN"), " 严重错误");
  EXPECT_EQ(reason().number, -7);
  EXPECT_EQ(reason().description, "pending");

  const auto noisy = standIn("Q8RESLOADER.Loader", [] {
    auto loader = com::make<LateBound>();
    loader->method("LoadString", [](auto) -> collections::Variant {
      com::SetErrorInfo({-8, "loader", "no such key", ""});
      throw com::Error(-8, "loader", "no such key");
    });
    return loader;
  });
  com::ClearErrorInfo();
  EXPECT_EQ(LoadMessage("严重错误", "EN"), "严重错误");
  EXPECT_FALSE(com::GetErrorInfo());
  unloadMessageLoader();
}

TEST(LoadMessageFmt, FillsThePlaceholdersOfTheTranslation) {
  FakeLoader fake{{{"%1在%2之前", "%2 after %1"}}};
  const auto installed = fake.install();
  EXPECT_EQ(LoadMessageFmt("%1在%2之前", "EN", {"IC", "AR"}), "AR after IC");
  EXPECT_EQ(LoadMessageFmt("%1票据凭证检查", "chs", {"0|"}), "0|票据凭证检查");
  unloadMessageLoader();
}

}  // namespace
}  // namespace velmora
