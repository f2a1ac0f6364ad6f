#include "velmora/collections/dictionary.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "error_of.h"
#include "velmora/collections/letter_case.h"

namespace velmora::collections {
namespace {

std::string contents(const Dictionary& dictionary) {
  std::string text;
  for (std::size_t i = 0; i < dictionary.Count(); ++i)
    text += dictionary.Key(i) + "=" + dictionary.Item(i).toText() + ";";
  return text;
}

DictionaryRef row(int keys) {
  auto dictionary = com::make<Dictionary>();
  for (int i = 0; i < keys; ++i) dictionary->Set("FColumn" + std::to_string(i), i);
  return dictionary;
}

TEST(Dictionary, KeepsFirstSpellingAndOrder) {
  const auto dictionary = com::make<Dictionary>();
  dictionary->Set("bchkUnPeriodVch", true);
  dictionary->Set("BYear", 2009);
  dictionary->Set("BCHKUNPERIODVCH", false);
  EXPECT_EQ(contents(*dictionary), "bchkUnPeriodVch=False;BYear=2009;");
  EXPECT_TRUE(dictionary->Lookup("byear"));
  EXPECT_EQ(dictionary->IndexOf("bYEAR"), 1U);
  dictionary->Remove("BchkUnPeriodVch");
  dictionary->Remove("absent");
  dictionary->Set("bChkUnPeriodVch", 1);
  EXPECT_EQ(contents(*dictionary), "BYear=2009;bChkUnPeriodVch=1;");
}

TEST(Dictionary, OnlyLettersAToZHaveTwoCases) {
  const auto dictionary = com::make<Dictionary>();
  dictionary->Set("摘要[", 1);
  dictionary->Set("摘要{", 2);
  dictionary->Set("É", 3);
  dictionary->Set("é", 4);
  dictionary->Set("", 5);
  EXPECT_EQ(contents(*dictionary), "摘要[=1;摘要{=2;É=3;é=4;=5;");
}

TEST(Dictionary, ReadsAbsentKeysAsEmptyOrTheFallback) {
  const auto dictionary = row(1);
  dictionary->Set("Null", Null());
  EXPECT_TRUE(dictionary->Value("absent").isEmpty());
  EXPECT_EQ(dictionary->GetValue("absent", "x").text(), "x");
  EXPECT_TRUE(dictionary->GetValue("null", "x").isNull()) << "a key that is present counts";
  EXPECT_FALSE(dictionary->Lookup("absent")) << "reading does not create";
}

TEST(Dictionary, AddRefusesAKeyThatIsPresent) {
  const auto dictionary = row(2);
  const auto error = errorOf([&] { dictionary->Add("fcolumn1", 9); });
  EXPECT_EQ(error.number(), com::error::kDuplicateKey);
  EXPECT_EQ(error.description(), "the key 'fcolumn1' is already present");
  EXPECT_EQ(dictionary->Value("FColumn1").toInt32(), 1);
  dictionary->Add("new", 3);
  EXPECT_EQ(dictionary->Count(), 3U);
}

TEST(Dictionary, ClonesShareKeysUntilOneOfThemChangesThem) {
  for (const int keys : {3, 60}) {
    const auto original = row(keys);
    const auto clone = original->Clone();
    clone->Set("fcolumn1", "changed");
    clone->SetItem(0, "set");
    EXPECT_TRUE(clone->SharesKeys(*original)) << "values alone must not copy the keys";
    EXPECT_EQ(original->Value("FColumn0").toInt32(), 0);
    EXPECT_EQ(original->Value("FColumn1").toInt32(), 1);

    const std::string before = contents(*original);
    clone->Set("extra", 1);
    clone->Remove("FColumn0");
    EXPECT_FALSE(clone->SharesKeys(*original));
    EXPECT_EQ(contents(*original), before);
    EXPECT_FALSE(original->Lookup("extra"));
    EXPECT_FALSE(clone->Lookup("FColumn0"));

    const auto second = original->Clone();
    original->RemoveAll();
    EXPECT_EQ(original->Count(), 0U);
    EXPECT_EQ(contents(*second), before) << "a clone outlives the original's keys";
  }
}

TEST(Dictionary, ClonesTakeOtherValues) {
  const auto original = row(3);
  const auto other = original->CloneWith({"a", 2, Variant()});
  EXPECT_TRUE(other->SharesKeys(*original));
  EXPECT_EQ(contents(*other), "FColumn0=a;FColumn1=2;FColumn2=;");
  EXPECT_EQ(original->Value("FColumn0").toInt32(), 0);
}

TEST(Dictionary, HoldsAHundredThousandKeys) {
  const auto dictionary = com::make<Dictionary>();
  constexpr int kKeys = 100'000;
  for (int i = 0; i < kKeys; ++i) dictionary->Set("Group" + std::to_string(i), i);
  ASSERT_EQ(dictionary->Count(), std::size_t{kKeys});
  for (int i = 0; i < kKeys; ++i)
    ASSERT_EQ(dictionary->Value("gROUP" + std::to_string(i)).toInt32(), i);
}

/// A dictionary as a plain list, for comparison.
class ListedDictionary {
 public:
  void set(const std::string& key, int value) {
    for (auto& [name, held] : entries_)
      if (equalsIgnoringCase(name, key)) {
        held = value;
        return;
      }
    entries_.emplace_back(key, value);
  }
  void remove(const std::string& key) {
    std::erase_if(entries_,
                  [&](const auto& entry) { return equalsIgnoringCase(entry.first, key); });
  }
  std::string contents() const {
    std::string text;
    for (const auto& [name, value] : entries_) text += name + "=" + std::to_string(value) + ";";
    return text;
  }

 private:
  std::vector<std::pair<std::string, int>> entries_;
};

RC_GTEST_PROP(DictionaryProperty, BehavesAsAListOfEntries, ()) {
  const auto dictionary = com::make<Dictionary>();
  ListedDictionary expected;
  const int steps = *rc::gen::inRange(0, 80);
  for (int step = 0; step < steps; ++step) {
    const bool upper = *rc::gen::arbitrary<bool>();
    const std::string key = (upper ? "KEY" : "key") + std::to_string(*rc::gen::inRange(0, 30));
    if (*rc::gen::inRange(0, 4) == 0) {
      dictionary->Remove(key);
      expected.remove(key);
    } else {
      dictionary->Set(key, step);
      expected.set(key, step);
    }
  }
  RC_ASSERT(contents(*dictionary) == expected.contents());
  for (std::size_t i = 0; i < dictionary->Count(); ++i)
    RC_ASSERT(dictionary->IndexOf(lowerCased(dictionary->Key(i))) == i);
}

}  // namespace
}  // namespace velmora::collections
