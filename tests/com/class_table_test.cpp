#include "velmora/com/class_table.h"

#include <gtest/gtest.h>
#include <thread>

#include "com/temporary_registry.h"
#include "error_of.h"
#include "velmora/com/context.h"
#include "velmora/com/dispatch_table.h"

namespace velmora::com {
namespace {

class Clerk final : public DispatchObject<Clerk> {
 public:
  explicit Clerk(std::string name) : name_(std::move(name)) {}
  std::string Name() { return name_; }
  static const DispatchTable<Clerk>& dispatchTable() {
    static const auto table =
        DispatchTable<Clerk>("Clerk", "Test.Clerk", Guid(), IDispatch::kInterfaceId)
            .method("Name", &Clerk::Name, {});
    return table;
  }

 private:
  std::string name_;
};

ClassEntry clerk(std::string name) {
  return {"Test.Clerk", Guid(), [name] { return make<Clerk>(name); }};
}

std::string nameOf(std::string_view progId) {
  return call(*CreateObject(progId), "Name").toText();
}

std::string failureOf(std::string_view progId) {
  const Error error = errorOf([&] { CreateObject(progId); });
  EXPECT_EQ(error.number(), error::kCannotCreateObject);
  return error.description();
}

class ClassTableTest : public testing::Test {
 protected:
  TemporaryRegistry registry_;
};

TEST_F(ClassTableTest, ScopesReplaceAndRestore) {
  const std::string unknown = "cannot create 'Test.Clerk': the class is not registered";
  EXPECT_EQ(failureOf("Test.Clerk"), unknown);
  {
    const ScopedClass outer(clerk("outer"));
    EXPECT_EQ(nameOf("TEST.clerk"), "outer");
    {
      const ScopedClass inner(clerk("inner"));
      EXPECT_EQ(nameOf("Test.Clerk"), "inner");
      const auto none = ScopedClass::hidden("test.CLERK");
      EXPECT_EQ(failureOf("Test.Clerk"),
                "cannot create 'Test.Clerk': the class is hidden in this process");
    }
    EXPECT_EQ(nameOf("Test.Clerk"), "outer");
    EXPECT_EQ(call(*GetObjectContext().CreateInstance("Test.Clerk"), "Name").text(), "outer");
  }
  EXPECT_EQ(failureOf("Test.Clerk"), unknown);
}

TEST_F(ClassTableTest, AFailingClassIsNamed) {
  const ScopedClass failing(
      {"Test.Clerk", Guid(), []() -> Ref<IDispatch> { throw Error(error::kFailed, "x", "ill"); }});
  EXPECT_EQ(failureOf("Test.Clerk"), "cannot create 'Test.Clerk': ill");
  const ScopedClass empty({"Test.Clerk", Guid(), [] { return Ref<IDispatch>(); }});
  EXPECT_EQ(failureOf("Test.Clerk"), "cannot create 'Test.Clerk': its class made no object");
}

TEST_F(ClassTableTest, LoadsTheRegisteredLibrary) {
  constexpr Guid id = Guid::parse("0E4C6A2B-58C9-4E0E-9A0C-1B53D3F5A001");
  Registry::putClass({"Test.Registered", id, VELMORA_TEST_SERVER});
  EXPECT_EQ(call(*CreateObject("test.registered"), "Say", "hello").text(), "echo hello");
  {
    const auto hidden = ScopedClass::hidden("Test.Registered");
    EXPECT_NE(failureOf("Test.Registered").find("hidden"), std::string::npos);
  }

  Registry::putClass({"Test.Missing", id, "/no/such/library.so"});
  EXPECT_NE(failureOf("Test.Missing").find("/no/such/library.so"), std::string::npos);
  Registry::putClass({"Test.NoServer", id, LibraryOf(reinterpret_cast<void*>(&CreateObject))});
  EXPECT_NE(failureOf("Test.NoServer").find("it has no DllGetClassObject"), std::string::npos);
  registry_.write("[nonsense]\n");
  EXPECT_NE(failureOf("Test.Registered").find("line 1"), std::string::npos);
}

TEST_F(ClassTableTest, AnActivatedServerIsKnownToThisProcessOnly) {
  ActivateServer(VELMORA_TEST_SERVER);
  EXPECT_FALSE(std::filesystem::exists(registry_.path()));
  EXPECT_EQ(Registry::writeLayer(), Registry::Layer::user);
  EXPECT_EQ(call(*CreateObject("Test.Echo"), "Say", "you").text(), "echo you");
  std::thread([] { EXPECT_TRUE(CreateObject("Test.Echo")); }).join();
  const std::string broken = failureOf("Test.Broken");
  EXPECT_NE(broken.find("does not serve the class {0E4C6A2B-58C9-4E0E-9A0C-1B53D3F5A002}"),
            std::string::npos)
      << broken;

  for (const std::string& path :
       {std::string("/no/such/library.so"), LibraryOf(reinterpret_cast<void*>(&CreateObject))}) {
    const Error error = errorOf([&] { ActivateServer(path); });
    EXPECT_EQ(error.number(), error::kCannotCreateObject);
    EXPECT_NE(error.description().find("cannot activate '" + path), std::string::npos);
    EXPECT_EQ(Registry::writeLayer(), Registry::Layer::user);
  }
}

}  // namespace
}  // namespace velmora::com
