#include "cli/demo/scripts.h"

#include "velmora/com/error.h"
#include "velmora/tsql/script.h"

namespace velmora::cli::demo {

namespace {

void runBatch(ado::Connection& connection, std::string_view script,
              const tsql::ScriptBatch& batch) {
  try {
    connection.Execute(batch.text);
  } catch (const com::Error& error) {
    throw com::Error(error.number(), error.source(),
                     std::string(script) + ", the batch at line " +
                         std::to_string(batch.firstLine) + ": " + error.description());
  }
}

}  // namespace

void runScripts(ado::Connection& connection, std::span<const EmbeddedText> scripts) {
  for (const EmbeddedText& script : scripts)
    for (const tsql::ScriptBatch& batch : tsql::splitScript(script.text))
      runBatch(connection, script.name, batch);
}

}  // namespace velmora::cli::demo
