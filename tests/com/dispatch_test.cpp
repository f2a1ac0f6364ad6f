#include <gtest/gtest.h>

#include "error_of.h"
#include "velmora/ado/recordset.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"
#include "velmora/com/dispatch_table.h"

namespace velmora::com {
namespace {

using collections::Date;
using collections::Dictionary;
using collections::DictionaryRef;
using collections::Null;
using collections::Vector;
using collections::VectorRef;

class ILedger : public IDispatch {
 public:
  using Base = IDispatch;
  static constexpr Guid kInterfaceId = Guid::parse("0E4C6A2B-58C9-4E0E-9A0C-1B53D3F5C001");

  virtual bool Post(const std::string& sText, std::int32_t& lCount, DictionaryRef& dFilter,
                    Date dDate, bool bFinal) = 0;
  virtual Ref<IUnknown> Rows(const Ref<IUnknown>& rsOld, VectorRef vOption, const Variant& any) = 0;

 protected:
  ~ILedger() = default;
};

class Ledger final : public DispatchObject<Ledger, ILedger> {
 public:
  bool Post(const std::string& sText, std::int32_t& lCount, DictionaryRef& dFilter, Date dDate,
            bool bFinal) override {
    if (sText == "fail") throw Error(error::kProvider, "Ledger", "no");
    log = sText + " " + dDate.toString() + (bFinal ? " final" : "");
    lCount += 10;
    if (!dFilter) dFilter = make<Dictionary>();
    dFilter->Set("seen", true);
    return bFinal;
  }
  Ref<IUnknown> Rows(const Ref<IUnknown>& rsOld, VectorRef vOption, const Variant& any) override {
    log = std::string(rsOld ? "old " : "none ") + (vOption ? "options " : "none ") + any.toText();
    return rsOld;
  }
  void Clear() { log.clear(); }

  static const DispatchTable<Ledger>& dispatchTable() {
    static const auto table =
        DispatchTable<Ledger>("Ledger", "Test.Ledger", Guid(), ILedger::kInterfaceId)
            .method(
                "Post", &Ledger::Post,
                {"sText", "lCount", "dFilter", {"dDate", Date::ymd(2009, 3, 1)}, {"bFinal", true}})
            .method("Rows", &ILedger::Rows, {"rsOld", {"vOption", VectorRef()}, {"any", "default"}})
            .method("Clear", &Ledger::Clear, {})
            .property(
                "Log", [](Ledger& ledger) { return Variant(ledger.log); },
                [](Ledger& ledger, const Variant& value) { ledger.log = value.toText(); })
            .property("Secret", nullptr, [](Ledger&, const Variant&) {});
    return table;
  }

  std::string log;
};

class DispatchTest : public testing::Test {
 protected:
  Variant invoke(std::string_view name, std::vector<Variant> arguments) {
    arguments_ = std::move(arguments);
    return ledger_->Invoke(name, arguments_);
  }
  Error errorOfInvoke(std::string_view name, std::vector<Variant> arguments) {
    return errorOf([&] { invoke(name, std::move(arguments)); });
  }

  Ref<Ledger> ledger_ = make<Ledger>();
  std::vector<Variant> arguments_;
};

TEST_F(DispatchTest, AnObjectAnswersForAllItsInterfaces) {
  const Ref<IUnknown> unknown = ledger_;
  EXPECT_TRUE(unknown.as<ILedger>());
  EXPECT_TRUE(unknown.as<IDispatch>());
  EXPECT_EQ(unknown.as<ILedger>().as<IUnknown>(), unknown);
  EXPECT_FALSE(unknown.as<Dictionary>());
}

TEST_F(DispatchTest, ConvertsArgumentsAndWritesReferencesBack) {
  EXPECT_TRUE(invoke("pOST", {5, "7x", VectorRef(), "2010-01-02 03:04", 0}) == Variant(false));
  EXPECT_EQ(ledger_->log, "5 2010-01-02 03:04:00");
  EXPECT_EQ(arguments_[0], Variant(5)) << "given by value";
  EXPECT_EQ(arguments_[1], Variant(17));
  EXPECT_TRUE(arguments_[2].toObject<Dictionary>()->Value("seen").toBool());
}

TEST_F(DispatchTest, LeavesOutTrailingOptionalArguments) {
  const auto filter = make<Dictionary>();
  EXPECT_EQ(invoke("Post", {"x", {}, filter}), Variant(true));
  EXPECT_EQ(ledger_->log, "x 2009-03-01 final");
  EXPECT_EQ(arguments_[2], Variant(filter)) << "the caller's own object";
  EXPECT_EQ(arguments_.size(), 3U);

  EXPECT_EQ(invoke("Rows", {Variant()}), Variant(Ref<IUnknown>()));
  EXPECT_EQ(ledger_->log, "none none default");
  invoke("Rows", {filter, make<Vector>(), 5});
  EXPECT_EQ(ledger_->log, "old options 5");
  EXPECT_TRUE(invoke("Clear", {}).isEmpty());
  EXPECT_EQ(ledger_->log, "");
  EXPECT_EQ(call(*ledger_, "Rows", Ref<Vector>()), Variant(Ref<Vector>()));
}

TEST_F(DispatchTest, TellsMemberCountAndTypeApart) {
  const Variant nothing{DictionaryRef()};
  struct Case {
    const char* member;
    std::vector<Variant> arguments;
    std::int32_t number;
    const char* description;
  };
  for (const Case& c : {
           Case{"Pots", {}, error::kUnknownName, "Ledger has no member 'Pots'"},
           {"Log", {}, error::kUnknownName, "Ledger has no member 'Log'"},
           {"post",
            {"x", 1},
            error::kBadParameterCount,
            "Ledger.Post: 2 arguments given, expected 3 to 5"},
           {"Clear", {1}, error::kBadParameterCount, "Ledger.Clear: 1 arguments given, expected 0"},
           {"Rows",
            {1, {}, {}, {}},
            error::kBadParameterCount,
            "Ledger.Rows: 4 arguments given, expected 1 to 3"},
           {"Post",
            {make<ado::Recordset>(), 1, nothing},
            error::kTypeMismatch,
            "Ledger.Post: argument 1 (sText) is Recordset, expected string"},
           {"Post",
            {"x", make<Vector>(), nothing},
            error::kTypeMismatch,
            "Ledger.Post: argument 2 (lCount) is Vector, expected 32-bit integer"},
           {"Post",
            {"x", 1, ledger_},
            error::kTypeMismatch,
            "Ledger.Post: argument 3 (dFilter) is Ledger, expected Dictionary"},
           {"Post",
            {"x", 1, "Password=1"},
            error::kTypeMismatch,
            "Ledger.Post: argument 3 (dFilter) is String, expected Dictionary"},
           {"Post",
            {nothing, 1, nothing},
            error::kTypeMismatch,
            "Ledger.Post: argument 1 (sText) is nothing, expected string"},
           {"Post",
            {"x", 1, nothing, "soon"},
            error::kTypeMismatch,
            "Ledger.Post: argument 4 (dDate): String 'soon' cannot be read as Date"},
           {"Post",
            {"x", 3e9, nothing},
            error::kOverflow,
            "Ledger.Post: argument 2 (lCount): Double '3000000000' does not fit Int32"},
           {"Post",
            {Null(), 1, nothing},
            error::kInvalidUseOfNull,
            "Ledger.Post: argument 1 (sText): Null cannot be read as String"},
       }) {
    const Error error = errorOfInvoke(c.member, c.arguments);
    EXPECT_EQ(error.description(), c.description);
    EXPECT_EQ(error.number(), c.number) << c.description;
    EXPECT_EQ(error.source(), "Test.Ledger");
  }
  EXPECT_EQ(ledger_->log, "") << "no call went through";
}

TEST_F(DispatchTest, WhatTheMethodRaisesPassesThrough) {
  const Error error = errorOfInvoke("Post", {"fail", 1, DictionaryRef()});
  EXPECT_EQ(error.number(), error::kProvider);
  EXPECT_EQ(error.source(), "Ledger");
  EXPECT_EQ(arguments_[1], Variant(1)) << "arguments stay as they were";
}

TEST_F(DispatchTest, PropertiesAreReadAndWrittenByName) {
  ledger_->PutProperty("LOG", 12);
  EXPECT_EQ(ledger_->GetProperty("log").text(), "12");
  EXPECT_EQ(errorOf([&] { ledger_->GetProperty("Post"); }).number(), error::kUnknownName);
  const auto error = errorOf([&] { ledger_->GetProperty("secret"); });
  EXPECT_EQ(error.number(), error::kNotImplemented);
  EXPECT_EQ(error.description(), "Ledger.secret cannot be read");
}

TEST_F(DispatchTest, TypeInformationFollowsTheSignatures) {
  const TypeInfo& info = ledger_->GetTypeInfo();
  std::string text;
  for (const MethodInfo& method : info.methods) {
    text += std::string(name(method.result)) + " " + method.name + ":";
    for (const ParameterInfo& parameter : method.parameters)
      text += " " + parameter.name + (parameter.inOut ? "&" : "") +
              (parameter.optional ? "?" : "") + " " + std::string(name(parameter.type)) + ";";
    text += "\n";
  }
  EXPECT_EQ(text,
            "boolean Post: sText string; lCount& 32-bit integer; dFilter& Dictionary; dDate? date; "
            "bFinal? boolean;\n"
            "object Rows: rsOld object; vOption? Vector; any? variant;\n"
            "nothing Clear:\n");
  EXPECT_EQ(info.findMethod("clear"), &info.methods[2]);
  EXPECT_EQ(info.findMethod("clea"), nullptr);
}

}  // namespace
}  // namespace velmora::com
