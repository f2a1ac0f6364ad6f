#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "velmora/ado/provider.h"
#include "velmora/com/error.h"

namespace velmora {

using Cells = std::vector<collections::Variant>;

/// A result with text columns, or integer ones where a cell of the first row is Int32.
inline ado::Rowset rowset(std::vector<std::string> columns, Cells cells) {
  ado::Rowset rows;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    ado::FieldDefinition field;
    field.name = std::move(columns[i]);
    field.type = ado::adVarWChar;
    field.definedSize = 4000;
    if (i < cells.size() && cells[i].type() == collections::VarType::int32)
      field.type = ado::adInteger;
    if (i < cells.size() && cells[i].type() == collections::VarType::date)
      field.type = ado::adDBTimeStamp;
    rows.fields.push_back(std::move(field));
  }
  rows.cells = std::move(cells);
  return rows;
}

/// A database that answers by what a statement contains, the last answer given first,
/// and remembers what it was asked. Statements without an answer return no rows.
class ScriptedDatabase {
 public:
  /// Becomes the provider "Scripted" until the next one does; has to outlive its use.
  ScriptedDatabase() {
    ado::RegisterProvider("Scripted", [this](const ado::ConnectionString& settings) {
      opened.push_back(settings.value("Data Source"));
      return std::make_unique<Session>(*this);
    });
  }
  ScriptedDatabase(const ScriptedDatabase&) = delete;
  ScriptedDatabase& operator=(const ScriptedDatabase&) = delete;

  /// Answers statements that contain `part` and have these parameters, in any order.
  void answer(std::string part, ado::Rowset rows, std::vector<std::string> parameters = {}) {
    answers_.push_back({std::move(part), std::move(parameters), std::move(rows), {}});
  }
  void fail(std::string part, std::string description) {
    answers_.push_back({std::move(part), {}, {}, std::move(description)});
  }
  /// As fail, because the connection is gone.
  void lose(std::string part, std::string description) {
    answers_.push_back(
        {std::move(part), {}, {}, std::move(description), com::error::kProviderConnect});
  }
  /// No longer answers so.
  void forget(const std::string& part) {
    std::erase_if(answers_, [&](const Answer& answer) { return answer.part == part; });
  }
  /// A value of the system profile.
  void profile(const std::string& key, const std::string& value) {
    answer("SystemProfile", rowset({"FValue"}, {value}), {key});
  }

  std::vector<std::string> statements;  ///< without the parameters
  std::vector<std::string> opened;      ///< data sources
  int open = 0;                         ///< connections at the moment

 private:
  struct Answer {
    std::string part;
    std::vector<std::string> parameters;
    ado::Rowset rows;
    std::string failure;
    std::int32_t failureNumber = com::error::kProvider;

    bool fits(std::string_view batch, std::span<const ado::ParameterValue> given) const {
      return batch.find(part) != std::string_view::npos &&
             std::ranges::all_of(parameters, [&](const std::string& wanted) {
               return std::ranges::any_of(given, [&](const ado::ParameterValue& parameter) {
                 return parameter.value.toText() == wanted;
               });
             });
    }
  };

  class Session final : public ado::ProviderConnection {
   public:
    explicit Session(ScriptedDatabase& database) : database_(database) { ++database_.open; }
    ~Session() override { --database_.open; }
    std::vector<ado::StatementResult> execute(
        std::string_view batch, std::span<const ado::ParameterValue> parameters) override {
      return database_.execute(batch, parameters);
    }

   private:
    ScriptedDatabase& database_;
  };

  std::vector<ado::StatementResult> execute(std::string_view batch,
                                            std::span<const ado::ParameterValue> parameters) {
    statements.emplace_back(batch);
    for (auto answer = answers_.rbegin(); answer != answers_.rend(); ++answer) {
      if (!answer->fits(batch, parameters)) continue;
      if (!answer->failure.empty())
        throw com::Error(answer->failureNumber, "Scripted", answer->failure);
      return {{true, answer->rows, -1}};
    }
    const bool returnsRows = batch.find("elect") != std::string_view::npos ||
                             batch.find("ELECT") != std::string_view::npos;
    return {{returnsRows, returnsRows ? rowset({"FNothing"}, {}) : ado::Rowset{}, -1}};
  }

  std::vector<Answer> answers_;
};

inline constexpr const char* kScriptedDsn = "ConnectString={Provider=Scripted;Data Source=books}";

}  // namespace velmora
