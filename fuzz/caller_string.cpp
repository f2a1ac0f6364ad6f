// The caller's string: the component and the command line read the same from it, also from
// what the command line writes.

#include "cli/caller_string.h"

#include "cli/failure.h"
#include "common/fuzz.h"
#include "frame/call/parse.h"
#include "velmora/com/error.h"

namespace velmora::fuzz {
namespace {

using cli::CallerString;

constexpr auto kKeys = {"ConnectString", "DBMS Name", "LANGUAGE", "SubID", "UserName", "a"};

/// What the component reads of the keys; nothing where it takes the text for none.
std::optional<CParse> parsed(std::string_view text) {
  CParse parser;
  try {
    parser.ParseString(text);
  } catch (const com::Error& error) {
    requireReadable(error.description(), text);
    return std::nullopt;
  }
  return parser;
}

std::optional<std::string> property(const CParse& parser, const char* key) {
  try {
    return parser.GetProperty(key);
  } catch (const com::Error&) {
    return std::nullopt;
  }
}

void agree(const CParse& component, const CallerString& program, std::string_view text) {
  for (const char* key : kKeys)
    require(property(component, key) == program.find(key), "read differently by the two", text);
}

void wrap(std::string_view text) {
  const std::string dsn = cli::callerStringFor(text, {true, "EN", ""});
  const auto component = parsed(dsn);
  require(component.has_value(), "the component does not read what the program wrote", dsn);
  agree(*component, CallerString(dsn), dsn);
  require(component->LanguageID() == "EN", "the language is lost", dsn);
  cli::connectStringOf(dsn);
}

/// `read`, or the reason in words for people.
template <class Read>
void tolerate(std::string_view text, Read read) {
  try {
    read();
  } catch (const cli::Failure& failure) {
    requireReadable(failure.what(), text);
  } catch (const com::Error& error) {
    requireReadable(error.description(), text);
  }
}

}  // namespace

void run(std::string_view input) {
  const auto component = parsed(input);
  tolerate(input, [&] {
    const CallerString program(input);
    require(component.has_value(), "taken by the program, not by the component", input);
    agree(*component, program, input);
    agree(*component, CallerString(program.toString()), program.toString());
  });
  tolerate(input, [&] { wrap(input); });
}

}  // namespace velmora::fuzz
