// Check-info files: their layout, code page and folder.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <thread>

#include "com/temporary_registry.h"
#include "documents.h"
#include "error_of.h"
#include "frame/classes.h"
#include "settlement/install_folder.h"
#include "velmora/com/class_table.h"
#include "velmora/public.h"

namespace velmora::settlement {
namespace {

using collections::Dictionary;
using collections::Null;
using collections::Vector;
using testing::HasSubstr;

/// An installation folder of its own. The folder is looked up once a thread, so each
/// test writes from a thread of its own.
class CheckInfoFile : public testing::Test {
 protected:
  CheckInfoFile() { com::Registry::putSetting("InstallPath", folder_); }
  ~CheckInfoFile() override { unsetenv("VELMORA_CODE_PAGE"); }

  bool write(const collections::VectorRef& rows, const std::string& name = "info") {
    return onThread([&] { return object()->WriteCheckInfoByVector(rows, name); });
  }
  bool write(const ado::RecordsetRef& rows, const std::string& name = "info") {
    return onThread([&] { return object()->WriteCheckInfoByRs(rows, name); });
  }
  std::string content(const std::string& name = "info.txt") const {
    std::ostringstream text;
    text << std::ifstream(folder_ + "/" + name, std::ios::binary).rdbuf();
    return text.str();
  }
  template <class Work>
  bool onThread(Work work) {
    bool done = false;
    std::thread([&] {
      done = work();
      reason_ = com::GetErrorInfo() ? com::GetErrorInfo()->description : "";
    }).join();
    return done;
  }
  static com::Ref<_clsPublic> object() {
    return com::CreateObject(_clsPublic::kProgId).as<_clsPublic>();
  }
  static collections::DictionaryRef row(const std::string& key, const Variant& value) {
    auto row = com::make<Dictionary>();
    row->Set(key, value);
    row->Set("FAmount", Decimal::parse("12.50"));
    return row;
  }

  com::ScopedClass class_{publicClasses()[2]};
  com::TemporaryRegistry registry_;
  std::string folder_ = registry_.folder();
  std::string reason_;
};

const std::string kLine = "--------------------------------------\r\n";

TEST_F(CheckInfoFile, WritesRowsWithTheirOwnValues) {
  setenv("VELMORA_CODE_PAGE", "65001", 1);
  auto rows = com::make<Vector>();
  rows->Add(row("单据", "QTYS1"));
  rows->Add(row("FOther", Null()));
  ASSERT_TRUE(write(rows)) << reason_;
  EXPECT_EQ(content(), kLine + "info\r\n" + kLine + "单据\t| FAmount\r\n" + kLine +
                           "QTYS1\t| 12.5\r\n\t| 12.5\r\n" + kLine + "合计记录行数：2\r\n\r\n\r\n");

  ASSERT_TRUE(write(com::make<Vector>())) << "in place of the first";
  EXPECT_EQ(content(),
            kLine + "info\r\n" + kLine + "\r\n" + kLine + kLine + "合计记录行数：0\r\n\r\n\r\n");

  rows->Add("no row");
  EXPECT_FALSE(write(rows));
  EXPECT_EQ(reason_, "row 3 is no Dictionary");
  EXPECT_THAT(content(), HasSubstr("QTYS1")) << "what was written stays";
}

TEST_F(CheckInfoFile, WritesARecordset) {
  setenv("VELMORA_CODE_PAGE", "UTF-8", 1);
  auto rows = com::make<ado::Recordset>();
  rows->Fields().Append("FID", ado::adInteger);
  rows->Fields().Append("FChkInfo", ado::adVarWChar, 300);
  rows->Open();
  ASSERT_TRUE(write(rows)) << reason_;
  EXPECT_THAT(content(), HasSubstr("FID\t| FChkInfo\r\n" + kLine + kLine + "合计记录行数：0"));
  for (const int id : {1, 2}) {
    rows->AddNew();
    rows->SetValue(0, id);
    rows->Update();
  }
  ASSERT_TRUE(write(rows));
  EXPECT_THAT(content(), HasSubstr(kLine + "1\t| \r\n2\t| \r\n" + kLine));
  EXPECT_TRUE(rows->EOF_());
}

TEST_F(CheckInfoFile, IsAnsiText) {
  auto rows = com::make<Vector>();
  rows->Add(row("F", "单据 🙂 é\xFF!"));
  ASSERT_TRUE(write(rows)) << reason_;
  EXPECT_THAT(content(), HasSubstr("\xB5\xA5\xBE\xDD ? \xA8\xA6?!")) << "simplified Chinese";
  setenv("VELMORA_CODE_PAGE", "1252", 1);
  ASSERT_TRUE(write(rows));
  EXPECT_THAT(content(), HasSubstr("?? ? \xE9?!"));
  com::Registry::putSetting("CodePage", "none such");
  unsetenv("VELMORA_CODE_PAGE");
  EXPECT_FALSE(write(rows));
  EXPECT_THAT(reason_, HasSubstr("\"none such\" is unknown"));
}

TEST_F(CheckInfoFile, StaysWithinItsFolder) {
  const auto rows = com::make<Vector>();
  for (const std::string name : {"../out", "/tmp/out", "a\\b", "", "sub/out"}) {
    EXPECT_FALSE(write(rows, name));
    EXPECT_THAT(reason_, HasSubstr("\"" + name + "\" is no name of a file"));
  }
  EXPECT_TRUE(write(rows, "..核销信息")) << reason_;
  EXPECT_TRUE(std::filesystem::exists(folder_ + "/..核销信息.txt"));

  com::Registry::putSetting("InstallPath", folder_ + "/none");
  EXPECT_FALSE(write(rows));
  EXPECT_THAT(reason_, HasSubstr("/none/info.txt: cannot be written: No such"));
  EXPECT_FALSE(write(collections::VectorRef()));
  EXPECT_THAT(reason_, HasSubstr("rs is nothing"));
}

TEST_F(CheckInfoFile, LooksForItsFolderOnceAThread) {
  EXPECT_TRUE(onThread([&] {
    const bool first = GetInstallFolder() == folder_ + "/";
    setenv("VELMORA_INSTALL_PATH", "/elsewhere/", 1);
    return first && GetInstallFolder() == folder_ + "/";
  }));
  EXPECT_TRUE(onThread([] { return GetInstallFolder() == "/elsewhere/"; }));
  unsetenv("VELMORA_INSTALL_PATH");
  com::Registry::putSetting("InstallPath", "");
  EXPECT_TRUE(
      onThread([] { return errorOf([] { GetInstallFolder(); }).number() == com::error::kFailed; }));
}

}  // namespace
}  // namespace velmora::settlement
