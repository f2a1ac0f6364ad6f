#include "cli/call/caller.h"

#include <gmock/gmock.h>

#include "velmora/collections/dictionary.h"
#include "velmora/com/class_table.h"
#include "velmora/com/context.h"
#include "velmora/com/dispatch_table.h"
#include "velmora/com/error.h"
#include "velmora/interfaces.h"

namespace velmora::cli {
namespace {

using collections::DictionaryRef;
using collections::Variant;
using testing::HasSubstr;

/// Stands in for clsPublic with operations that show what reached them.
class Probe final : public com::DispatchObject<Probe> {
 public:
  bool Fill(const std::string& sDsn, DictionaryRef& dFilter, std::string& strErrMsg,
            std::int32_t lMode, const DictionaryRef& dSwitch) {
    com::ClearErrorInfo();
    com::GetObjectContext().SetComplete();
    if (!dFilter) dFilter = com::make<collections::Dictionary>();
    dFilter->Set("sDsn", sDsn);
    dFilter->Set("lMode", lMode);
    if (dSwitch) dSwitch->Set("seen", true);
    strErrMsg += "!";
    return true;
  }
  bool AnswerFalse() {
    com::GetObjectContext().SetAbort();
    com::SetErrorInfo({-5, "Probe", "no period; Password=secret", "unaudited documents"});
    return false;
  }
  Variant Raise() {
    com::GetObjectContext().SetComplete();
    throw com::Error(com::error::kProvider, "Provider", "no such table");
  }

  static const com::DispatchTable<Probe>& dispatchTable() {
    static const auto& table = []() -> const com::DispatchTable<Probe>& {
      static com::DispatchTable<Probe> methods("clsPublic", _clsPublic::kProgId,
                                               _clsPublic::kClassId, _clsPublic::kInterfaceId);
      return methods
          .method("Fill", &Probe::Fill,
                  {"sDsn", "dFilter", "strErrMsg", com::Parameter("lMode", 7),
                   com::Parameter("dDictSwitch", com::Ref<com::IUnknown>())})
          .method("AnswerFalse", &Probe::AnswerFalse, {})
          .method("Raise", &Probe::Raise, {});
    }();
    return table;
  }
};

class CallerTest : public testing::Test {
 protected:
  std::string answer(const std::string& request) { return jsonText(caller_.answer(request).json); }

  com::ScopedClass probe_{{_clsPublic::kProgId, _clsPublic::kClassId,
                           [] { return com::Ref<com::IDispatch>(com::make<Probe>()); }}};
  Caller caller_{""};
};

TEST_F(CallerTest, AnswersWithWhatCameBackByReference) {
  EXPECT_EQ(answer(R"({"class":"CLSPUBLIC","operation":"fill","arguments":)"
                   R"({"SDSN":"d","dFilter":{"bArp":true},"strErrMsg":"a","lMode":3,)"
                   R"("dDictSwitch":{}}})"),
            R"({"result":true,"arguments":{"dFilter":{"bArp":true,"sDsn":"d","lMode":3},)"
            R"("strErrMsg":"a!","dDictSwitch":{"seen":true}},"vote":"complete","error":null})");
}

TEST_F(CallerTest, FillsInWhatIsAbsent) {
  EXPECT_EQ(answer(R"({"class":"Velmora.clsPublic","operation":"Fill","arguments":{"sDsn":"d"}})"),
            R"({"result":true,"arguments":{"dFilter":{"sDsn":"d","lMode":7},"strErrMsg":"!",)"
            R"("dDictSwitch":null},"vote":"complete","error":null})");
  Caller withDsn("given on the command line");
  EXPECT_THAT(jsonText(withDsn.answer(R"({"class":"clsPublic","operation":"Fill"})").json),
              HasSubstr("given on the command line"));
}

TEST_F(CallerTest, TellsWhyAnOperationFailed) {
  EXPECT_EQ(answer(R"({"class":"clsPublic","operation":"AnswerFalse"})"),
            R"({"result":false,"arguments":{},"vote":"abort","error":null,)"
            R"("diagnostic":{"number":-5,"source":"Probe","description":"no period; Password=***",)"
            R"("place":"unaudited documents"}})");
  const auto raised = caller_.answer(R"({"class":"clsPublic","operation":"Raise"})");
  EXPECT_FALSE(raised.ran);
  EXPECT_EQ(jsonText(raised.json),
            R"({"result":null,"arguments":{},"vote":"complete","error":)"
            R"({"number":-2147217900,"source":"Provider","description":"no such table"}})");
}

TEST_F(CallerTest, NamesWhatIsWrongWithARequestAndForgetsTheVoteBefore) {
  struct Case {
    const char* request;
    const char* says;
  };
  answer(R"({"class":"clsPublic","operation":"AnswerFalse"})");
  for (const Case& c : {
           Case{"", "not valid JSON"},
           Case{"[]", "a request is an object"},
           Case{R"({"class":"clsPublic"})", "names no \\\"operation\\\""},
           Case{R"({"class":"clsPublik","operation":"Fill"})",
                "there is no class \\\"clsPublik\\\""},
           Case{R"({"class":"clsPublic","operation":"Fil"})", "has no operation \\\"Fil\\\""},
           Case{R"({"class":"clsPublic","operation":"Fill","args":{}})", "\\\"args\\\" is unknown"},
           Case{R"({"class":"clsPublic","operation":"Fill","arguments":{"sDns":"d"}})",
                "has no argument \\\"sDns\\\""},
           Case{R"({"class":"clsPublic","operation":"Fill","arguments":{"sDsn":"d","SDSN":"e"}})",
                "\\\"SDSN\\\" occurs twice"},
           Case{R"({"class":"clsPublic","operation":"Fill"})", "needs the argument sDsn (string)"},
           Case{R"({"class":"clsPublic","operation":"Fill","arguments":{"sDsn":"d","dFilter":5}})",
                "dFilter"},
           Case{R"({"class":"clsPublic","operation":"Fill","arguments":)"
                R"({"sDsn":"d","dFilter":{"a":{"$date":"x"}}}})",
                "dFilter.a: \\\"x\\\" is not a date"},
       }) {
    const auto result = caller_.answer(c.request);
    EXPECT_FALSE(result.ran) << c.request;
    EXPECT_THAT(jsonText(result.json), HasSubstr(c.says)) << c.request;
    EXPECT_EQ(result.json.at("vote"), "none") << c.request;
    EXPECT_FALSE(result.json.contains("diagnostic")) << c.request;
  }
}

}  // namespace
}  // namespace velmora::cli
