// The component as a library: its entry points and its life.

#include <dlfcn.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include "velmora/com/class_table.h"
#include "velmora/com/error.h"
#include "velmora/com/registry.h"
#include "velmora/interfaces.h"

namespace velmora {
namespace {

class Server : public testing::Test {
 protected:
  void SetUp() override {
    library_ = dlopen(VELMORA_COMPONENT, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library_, nullptr) << dlerror();
  }
  template <class Function>
  Function entryPoint(const char* name) {
    return reinterpret_cast<Function>(dlsym(library_, name));
  }
  std::int32_t canUnload() { return entryPoint<com::DllCanUnloadNowFunction>("DllCanUnloadNow")(); }

  void* library_ = nullptr;
};

TEST_F(Server, RegistersItsClassesWithItsOwnPath) {
  const auto before = com::Registry::writeLayer();
  com::Registry::setWriteLayer(com::Registry::Layer::process);
  EXPECT_EQ(entryPoint<com::DllRegisterServerFunction>("DllRegisterServer")(), com::kOk);
  for (const auto& [progId, classId] :
       {std::pair{_clsInitBalCheck::kProgId, _clsInitBalCheck::kClassId},
        std::pair{_clsCheck::kProgId, _clsCheck::kClassId},
        std::pair{_clsPublic::kProgId, _clsPublic::kClassId}}) {
    const auto found = com::Registry::findClass(progId);
    ASSERT_TRUE(found) << progId;
    EXPECT_EQ(found->classId, classId);
    EXPECT_TRUE(std::filesystem::equivalent(found->library, VELMORA_COMPONENT));
  }
  EXPECT_EQ(entryPoint<com::DllUnregisterServerFunction>("DllUnregisterServer")(), com::kOk);
  EXPECT_FALSE(com::Registry::findClass(_clsCheck::kProgId));
  com::Registry::setWriteLayer(before);
}

TEST_F(Server, CannotUnloadWhileAnObjectLives) {
  EXPECT_EQ(canUnload(), com::kOk);
  com::ActivateServer(VELMORA_COMPONENT);
  auto object = com::CreateObject("velmora.CLSPUBLIC");
  EXPECT_TRUE(object.as<_clsPublic>());
  EXPECT_FALSE(object.as<_clsCheck>());
  EXPECT_EQ(canUnload(), com::kFalse);
  auto second = com::CreateObject(_clsInitBalCheck::kProgId);
  object = nullptr;
  EXPECT_EQ(canUnload(), com::kFalse);
  second = nullptr;
  EXPECT_EQ(canUnload(), com::kOk);
}

TEST_F(Server, HandsOutFactoriesOfItsOwnClassesOnly) {
  const auto getClassObject = entryPoint<com::DllGetClassObjectFunction>("DllGetClassObject");
  void* object = &object;
  EXPECT_EQ(getClassObject(com::Guid{}, com::IClassFactory::kInterfaceId, &object),
            com::error::kClassNotRegistered);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(getClassObject(_clsCheck::kClassId, _clsCheck::kInterfaceId, &object),
            com::error::kNoInterface);
  EXPECT_EQ(getClassObject(_clsCheck::kClassId, com::IClassFactory::kInterfaceId, nullptr),
            com::error::kInvalidArgument);
  ASSERT_EQ(getClassObject(_clsCheck::kClassId, com::IClassFactory::kInterfaceId, &object),
            com::kOk);
  const auto factory =
      com::Ref<com::IClassFactory>::adopt(static_cast<com::IClassFactory*>(object));
  EXPECT_EQ(canUnload(), com::kFalse) << "a factory runs code of the library";
  EXPECT_TRUE(factory->CreateInstance().as<_clsCheck>());
}

/// A copy of the library, so that nothing else in this process keeps it.
TEST(ServerLife, UnloadsCleanly) {
  const auto file =
      std::filesystem::temp_directory_path() / ("velmora-" + std::to_string(::getpid()) + ".so");
  std::filesystem::copy_file(VELMORA_COMPONENT, file);
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto canUnload =
      reinterpret_cast<com::DllCanUnloadNowFunction>(dlsym(library, "DllCanUnloadNow"));
  const auto getClassObject =
      reinterpret_cast<com::DllGetClassObjectFunction>(dlsym(library, "DllGetClassObject"));
  ado::RecordsetRef rows;
  {
    void* made = nullptr;
    getClassObject(_clsPublic::kClassId, com::IClassFactory::kInterfaceId, &made);
    const auto factory =
        com::Ref<com::IClassFactory>::adopt(static_cast<com::IClassFactory*>(made));
    const auto object = factory->CreateInstance().as<_clsPublic>();
    rows = object->GetData(
        "ConnectString={Provider=Velmora.Embedded;Data Source=:memory:;Mode=ReadWrite}",
        "select 7 as n");
    EXPECT_EQ(object->GetCurFincDate("nonsense", true), collections::Date::today());
    EXPECT_EQ(canUnload(), com::kFalse);
  }
  EXPECT_EQ(canUnload(), com::kOk);
  dlclose(library);
  EXPECT_EQ(dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "it is still there";
  std::filesystem::remove(file);
  EXPECT_TRUE(com::GetErrorInfo());
  EXPECT_EQ(rows->GetValue(0), collections::Variant(7));
}

}  // namespace
}  // namespace velmora
