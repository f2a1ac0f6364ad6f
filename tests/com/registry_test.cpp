#include "velmora/com/registry.h"

#include <gtest/gtest.h>
#include <thread>

#include "com/temporary_registry.h"
#include "error_of.h"

namespace velmora::com {
namespace {

constexpr Guid kId = Guid::parse("0E4C6A2B-58C9-4E0E-9A0C-1B53D3F5B001");
const std::string kIdText = "{" + kId.toString() + "}";

class RegistryTest : public testing::Test {
 protected:
  ~RegistryTest() override { Registry::setWriteLayer(Registry::Layer::user); }

  TemporaryRegistry registry_;
};

TEST_F(RegistryTest, WritesWhatItReads) {
  EXPECT_FALSE(Registry::findClass("Test.Class"));
  Registry::removeClass("Test.Class");
  EXPECT_FALSE(std::filesystem::exists(registry_.path())) << "nothing to remove, nothing to write";

  Registry::putSetting("InstallPath", "/opt/a folder");
  Registry::putClass({"Test.Class", kId, "/opt/lib/a library.so"});
  Registry::putClass({"Test.Other", kId, "/opt/lib/other.so"});
  Registry::putClass({"test.class", kId, "/opt/lib/new one.so"});
  EXPECT_EQ(registry_.text(),
            "[settings]\nInstallPath = /opt/a folder\n[classes]\nTest.Class = " + kIdText +
                " /opt/lib/new one.so\nTest.Other = " + kIdText + " /opt/lib/other.so\n");
  const auto found = Registry::findClass("TEST.CLASS");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->progId, "Test.Class");
  EXPECT_EQ(found->classId, kId);
  EXPECT_EQ(found->library, "/opt/lib/new one.so");
  EXPECT_EQ(Registry::setting("installpath"), "/opt/a folder");

  Registry::removeClass("Test.Class");
  EXPECT_FALSE(Registry::findClass("Test.Class"));
  EXPECT_EQ(Registry::classes(Registry::Layer::user).size(), 1U);
  const auto folder = std::filesystem::path(registry_.path()).parent_path();
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1)
      << "no temporary file stays behind";
}

TEST_F(RegistryTest, KeepsCommentsWhereTheyStand) {
  registry_.write("# ours\r\n[classes]\r\n; the checks\n\n[settings]\n  Name =  a = b  \n# end");
  Registry::putSetting("Second", "2");
  Registry::putClass({"Test.Class", kId, "/lib.so"});
  EXPECT_EQ(registry_.text(), "# ours\n[classes]\n; the checks\n\nTest.Class = " + kIdText +
                                  " /lib.so\n[settings]\nName = a = b\n# end\nSecond = 2\n");
  EXPECT_EQ(Registry::setting("Name"), "a = b");
}

TEST_F(RegistryTest, NamesFileAndLineOfWhatItCannotRead) {
  struct Case {
    std::string text;
    const char* expected;
  };
  for (const Case& c : {
           Case{"Name = value\n", ", line 1: 'Name = value' is no entry"},
           {"[settings]\n\nno equals sign\n", ", line 3: 'no equals sign' is no entry"},
           {"[settings]\n= value\n", ", line 2: '= value' is no entry"},
           {"[software]\n", ", line 1: '[software]' is no section"},
           {"[settings]\nA = 1\na = 2\n", ", line 3: 'a' is given twice"},
           {"[classes]\nA = /lib.so\n", ", line 2: '/lib.so' serves no class"},
           {"[classes]\nA = " + kIdText + " lib.so\n", "with an absolute path"},
           {"[classes]\nA = {123} /lib.so\n", ", line 2: '{123}' is no id"},
       }) {
    registry_.write(c.text);
    const auto error = errorOf([] { Registry::setting("Anything"); });
    EXPECT_EQ(error.number(), error::kFailed);
    EXPECT_NE(error.description().find(registry_.path()), std::string::npos);
    EXPECT_NE(error.description().find(c.expected), std::string::npos) << error.description();
    EXPECT_EQ(errorOf([] { Registry::putSetting("A", "1"); }).number(), error::kFailed);
    EXPECT_EQ(registry_.text(), c.text) << "a file that is not understood is not overwritten";
  }
}

TEST_F(RegistryTest, RefusesWhatWouldNotReadBack) {
  struct Case {
    const char *name, *value;
  };
  for (const Case& c : {Case{"", "1"},
                        {"a=b", "1"},
                        {"[a", "1"},
                        {"#a", "1"},
                        {" a", "1"},
                        {"a", "1\n[classes]"},
                        {"a", " 1"}})
    EXPECT_EQ(errorOf([&] { Registry::putSetting(c.name, c.value); }).number(),
              error::kInvalidArgument)
        << c.name << "=" << c.value;
  EXPECT_EQ(errorOf([] {
              Registry::putClass({"Test.Class", kId, "lib.so"});
            }).number(),
            error::kInvalidArgument);
}

TEST_F(RegistryTest, ProcessLayerStandsAboveTheUsersFile) {
  Registry::putSetting("RegistryTest", "user");
  Registry::putClass({"Test.Class", kId, "/user.so"});
  Registry::setWriteLayer(Registry::Layer::process);
  Registry::putSetting("registrytest", "process");
  Registry::putClass({"Test.Class", kId, "/process.so"});
  EXPECT_EQ(Registry::setting("RegistryTest"), "process");
  EXPECT_EQ(Registry::findClass("Test.Class")->library, "/process.so");
  EXPECT_EQ(registry_.text().find("process"), std::string::npos);
  Registry::removeClass("Test.Class");
  EXPECT_EQ(Registry::findClass("Test.Class")->library, "/user.so");
}

TEST_F(RegistryTest, WriteLayerIsTheThreadsOwn) {
  Registry::setWriteLayer(Registry::Layer::process);
  auto other = Registry::Layer::process;
  std::thread([&] { other = Registry::writeLayer(); }).join();
  EXPECT_EQ(other, Registry::Layer::user);
}

TEST_F(RegistryTest, SaysWhichFileCannotBeWritten) {
  registry_.write("");
  std::filesystem::remove(registry_.path());
  std::filesystem::create_directory(registry_.path());
  const auto error = errorOf([] { Registry::putSetting("A", "1"); });
  EXPECT_NE(error.description().find(registry_.path()), std::string::npos) << error.description();
}

TEST(RegistryFile, FollowsTheEnvironment) {
  const TemporaryRegistry registry;
  EXPECT_EQ(Registry::file(Registry::Layer::user), registry.path());
  EXPECT_EQ(Registry::file(Registry::Layer::process), "");
  EXPECT_EQ(Registry::file(Registry::Layer::system), "/etc/velmora/registry");
  unsetenv("VELMORA_REGISTRY");
  setenv("XDG_CONFIG_HOME", "/config", 1);
  EXPECT_EQ(Registry::file(Registry::Layer::user), "/config/velmora/registry");
  unsetenv("XDG_CONFIG_HOME");
  setenv("HOME", "/home/someone", 1);
  EXPECT_EQ(Registry::file(Registry::Layer::user), "/home/someone/.config/velmora/registry");
}

}  // namespace
}  // namespace velmora::com
