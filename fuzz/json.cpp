// JSON requests of `velmora call`, and the values in them.

#include <cstdlib>

#include "cli/call/caller.h"
#include "cli/call/json_values.h"
#include "common/fuzz.h"
#include "frame/classes.h"
#include "velmora/ado/provider.h"

namespace velmora::fuzz {
namespace {

using namespace cli;

/// A database where every table is there and empty: no input reaches a file or a server.
class NoRows final : public ado::ProviderConnection {
 public:
  std::vector<ado::StatementResult> execute(std::string_view,
                                            std::span<const ado::ParameterValue>) override {
    ado::StatementResult result;
    result.hasRows = true;
    for (const char* name : {"FID", "FKey", "FValue", "FName", "FNumber", "FDate"}) {
      ado::FieldDefinition field;
      field.name = name;
      field.type = ado::adVarWChar;
      field.definedSize = 80;
      result.rows.fields.push_back(std::move(field));
    }
    return {std::move(result)};
  }
};

bool prepare() {
  for (com::ClassEntry& entry : publicClasses()) com::RegisterClass(std::move(entry));
  for (const char* name : {"Velmora.Embedded", "MSDASQL"})
    ado::RegisterProvider(name,
                          [](const ado::ConnectionString&) { return std::make_unique<NoRows>(); });
  ::setenv("VELMORA_INSTALL_PATH", "/dev/null", 1);  // where no file can be written
  return true;
}

void valueReadsBackTheSame(std::string_view input) {
  std::string once;
  try {
    once = jsonText(jsonFromValue(valueFromJson(parseJson(input))));
  } catch (const JsonError& error) {
    requireReadable(error.what(), input);
    return;
  }
  try {
    require(jsonText(jsonFromValue(valueFromJson(parseJson(once)))) == once,
            "read back differently", once);
  } catch (const JsonError& error) {
    require(false, "what was written cannot be read", error.what() + ("\n" + once));
  }
}

}  // namespace

void run(std::string_view input) {
  static const bool ready = prepare();
  require(ready, "not prepared", "");
  valueReadsBackTheSame(input);
  Caller caller("ConnectString={Provider=Velmora.Embedded};LANGUAGE=EN;SubID=AR");
  const auto answer = caller.answer(input);
  parseJson(jsonText(answer.json));
  for (const char* part : {"error", "diagnostic"})
    if (answer.json.contains(part) && !answer.json.at(part).is_null())
      requireReadable(answer.json.at(part).at("description").get<std::string>(), input);
}

}  // namespace velmora::fuzz
