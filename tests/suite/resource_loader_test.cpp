#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "platform/suite/message_catalogue.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"

namespace velmora::suite {
namespace {

com::Ref<com::IDispatch> loaderFor(const char* language) {
  auto loader = com::CreateObject("Q8RESLOADER.Loader");
  loader->PutProperty("ResFileBaseName", "Q8ArAp");
  loader->PutProperty("LanguageID", language);
  return loader;
}

std::string text(const char* language, const char* key) {
  return com::call(*loaderFor(language), "LoadString", key).toText();
}

TEST(ResourceLoader, GivesTheTextOfTheLanguage) {
  EXPECT_EQ(text("EN", "严重错误"), "Serious error");
  EXPECT_EQ(text("en", "凭证"), "Voucher");
  EXPECT_EQ(text("CHT", "贴现凭证没有生成"), "貼現憑證沒有產生");
}

TEST(ResourceLoader, LanguageCanChangeAfterALookup) {
  const auto loader = loaderFor("EN");
  EXPECT_EQ(com::call(*loader, "LoadString", "转账").toText(), "Transfer");
  loader->PutProperty("LanguageID", "CHT");
  EXPECT_EQ(com::call(*loader, "LoadString", "转账").toText(), "轉帳");
}

TEST(ResourceLoader, RaisesForWhatItDoesNotHave) {
  // A catalogue beside the folder of messages, and one within it in another language.
  namespace fs = std::filesystem;
  const fs::path place = fs::temp_directory_path() / "velmora_languages";
  fs::create_directories(place / "messages");
  const auto english = findMessageFile("Q8ArAp_EN");
  for (const char* name : {"EVIL.mo", "messages/Q8ArAp_FR.mo", "messages/Q8ArAp_EN.mo"})
    fs::copy_file(english, place / name, fs::copy_options::overwrite_existing);
  setenv("VELMORA_MESSAGES", (place / "messages").c_str(), 1);
  for (const auto& [language, key, named] : {std::tuple{"EN", "没有这样的文字", "没有这样的文字"},
                                             {"EN", "", "EN"},
                                             {"CHS", "凭证", "Q8ArAp_CHS"},
                                             {"FR", "凭证", "\"FR\"; chs, CHT or EN"},
                                             {"", "凭证", "\"\""},
                                             {"EN ", "凭证", "\"EN \""},
                                             {"/../../EVIL", "凭证", "\"/../../EVIL\""}}) {
    try {
      text(language, key);
      ADD_FAILURE() << language << " " << key;
    } catch (const com::Error& error) {
      EXPECT_NE(error.description().find(named), std::string::npos) << error.description();
    }
  }
  unsetenv("VELMORA_MESSAGES");
  fs::remove_all(place);
}

TEST(MessageCatalogue, RefusesAFileThatIsNone) {
  const auto path = std::filesystem::temp_directory_path() / "velmora_no_catalogue.mo";
  for (const std::string& content :
       {std::string("not a catalogue at all, but long enough for a header"), std::string(),
        std::string("\xde\x12\x04\x95\0\0\0\0\xff\0\0\0\x1c\0\0\0\x1c\0\0\0\0\0\0\0\0\0\0\0",
                    28)}) {
    std::ofstream(path, std::ios::binary) << content;
    EXPECT_THROW(MessageCatalogue::read(path.string()), com::Error);
  }
  std::filesystem::remove(path);
  EXPECT_THROW(MessageCatalogue::read(path.string()), com::Error);
}

// The texts of one language, read from its source catalogue.
std::map<std::string, std::string> sourceTexts(const std::string& language) {
  std::ifstream file(std::string(VELMORA_SOURCE_DIR "/resources/messages/Q8ArAp_") + language +
                     ".po");
  const std::regex line("(msgid|msgstr) \"(.+)\"");
  std::map<std::string, std::string> texts;
  std::string key;
  for (std::string read; std::getline(file, read);) {
    std::smatch match;
    if (!std::regex_match(read, match, line)) continue;
    if (match[1] == "msgid") {
      key = match[2];
    } else {
      texts[key] = match[2];
    }
  }
  return texts;
}

std::multiset<std::string> placeholders(const std::string& text) {
  const std::regex pattern("%[0-9]+|\\|");
  return {std::sregex_token_iterator(text.begin(), text.end(), pattern),
          std::sregex_token_iterator()};
}

// A key that a language lacks or a lost placeholder would only show at a customer's
// period end.
TEST(Catalogues, AreComplete) {
  const auto english = sourceTexts("EN");
  const auto traditional = sourceTexts("CHT");
  ASSERT_GT(english.size(), 50u);
  EXPECT_EQ(english.size(), traditional.size());
  for (const auto* texts : {&english, &traditional})
    for (const auto& [key, translation] : *texts)
      EXPECT_EQ(placeholders(key), placeholders(translation)) << key;
  for (const auto& [key, translation] : english) EXPECT_TRUE(traditional.contains(key)) << key;
}

// The string literals of `code` that hold other than ASCII characters.
std::set<std::string> translatedLiterals(const std::string& code) {
  std::set<std::string> literals;
  const std::regex literal("\"([^\"\\\\\n]*)\"");
  for (std::sregex_iterator it(code.begin(), code.end(), literal), end; it != end; ++it) {
    const std::string value = (*it)[1];
    if (std::any_of(value.begin(), value.end(), [](char c) { return c < 0; }))
      literals.insert(value);
  }
  return literals;
}

// Every Chinese text in the component's code is a key; one without a translation
// would reach an English reader in Chinese.
TEST(Catalogues, HaveEveryTextOfTheCode) {
  const auto english = sourceTexts("EN");
  std::size_t found = 0;
  for (const char* room : {"checks", "common", "frame", "settlement"}) {
    const std::filesystem::path folder = std::filesystem::path(VELMORA_SOURCE_DIR "/src") / room;
    if (!std::filesystem::exists(folder)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (entry.path().extension() != ".cpp") continue;
      std::ifstream file(entry.path());
      const std::string code((std::istreambuf_iterator<char>(file)), {});
      for (const std::string& literal : translatedLiterals(code)) {
        ++found;
        EXPECT_TRUE(english.contains(literal)) << entry.path() << ": " << literal;
      }
    }
  }
  EXPECT_GT(found, 50u);
}

}  // namespace
}  // namespace velmora::suite
