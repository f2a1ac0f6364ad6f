#include "platform/com/registry_text.h"

#include <algorithm>
#include <stdexcept>

#include "velmora/collections/letter_case.h"
#include "velmora/com/error.h"

namespace velmora::com {

namespace {

using Section = RegistryText::Section;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool isComment(std::string_view line) {
  return line.empty() || line.front() == '#' || line.front() == ';';
}

constexpr std::string_view headingOf(Section section) {
  return section == Section::classes ? "[classes]" : "[settings]";
}

Section sectionOf(std::string_view heading) {
  for (const Section section : {Section::classes, Section::settings})
    if (heading == headingOf(section)) return section;
  throw std::invalid_argument("'" + std::string(heading) +
                              "' is no section; expected [classes] or [settings]");
}

/// Raises std::invalid_argument when the entry is of no use in its section.
void checkValue(Section section, const RegistryText::Entry& entry) {
  if (section == Section::classes) toRegisteredClass(entry);
}

bool readsBack(std::string_view name, std::string_view value) {
  return !isComment(name) && name.front() != '[' && name == trimmed(name) &&
         name.find_first_of("=\n") == std::string_view::npos && value == trimmed(value) &&
         value.find('\n') == std::string_view::npos;
}

void checkStorable(Section section, const RegistryText::Entry& entry) {
  try {
    if (!readsBack(entry.name, entry.value))
      throw std::invalid_argument("'" + entry.name + " = " + entry.value +
                                  "' is not a line 'name = value'");
    checkValue(section, entry);
  } catch (const std::invalid_argument& reason) {
    throw Error(error::kInvalidArgument, "Velmora.Registry", reason.what());
  }
}

}  // namespace

RegisteredClass toRegisteredClass(const RegistryText::Entry& entry) {
  const std::string_view value = entry.value;
  const std::size_t blank = std::min(value.find(' '), value.size());
  const auto library = trimmed(value.substr(blank));
  if (!value.starts_with('{') || !library.starts_with('/'))
    throw std::invalid_argument("'" + entry.value +
                                "' serves no class; expected '{class id} "
                                "library' with an absolute path");
  return {entry.name, Guid::parse(value.substr(0, blank)), std::string(library)};
}

bool RegistryText::Line::is(Section wantedSection, std::string_view wantedName) const noexcept {
  return section == wantedSection && !name.empty() &&
         collections::equalsIgnoringCase(name, wantedName);
}

RegistryText::RegistryText(std::string_view text, const std::string& path) {
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    try {
      parseLine(trimmed(text.substr(0, end)));
    } catch (const std::invalid_argument& reason) {
      throw Error(error::kFailed, "Velmora.Registry",
                  path + ", line " + std::to_string(number) + ": " + reason.what());
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void RegistryText::parseLine(std::string_view line) {
  const Section section = lines_.empty() ? Section::none : lines_.back().section;
  if (isComment(line)) {
    lines_.push_back({section, "", std::string(line)});
    return;
  }
  if (line.front() == '[') {
    lines_.push_back({sectionOf(line), "", std::string(line)});
    return;
  }
  const std::size_t equals = line.find('=');
  if (section == Section::none || equals == std::string_view::npos || equals == 0)
    throw std::invalid_argument("'" + std::string(line) +
                                "' is no entry; expected 'name = value' in a section");
  const Entry entry{std::string(trimmed(line.substr(0, equals))),
                    std::string(trimmed(line.substr(equals + 1)))};
  if (find(section, entry.name)) throw std::invalid_argument("'" + entry.name + "' is given twice");
  checkValue(section, entry);
  lines_.push_back({section, entry.name, entry.value});
}

std::optional<RegistryText::Entry> RegistryText::find(Section section,
                                                      std::string_view name) const {
  for (const Line& line : lines_)
    if (line.is(section, name)) return Entry{line.name, line.text};
  return std::nullopt;
}

std::vector<RegistryText::Entry> RegistryText::entries(Section section) const {
  std::vector<Entry> found;
  for (const Line& line : lines_)
    if (line.section == section && !line.name.empty()) found.push_back({line.name, line.text});
  return found;
}

void RegistryText::put(Section section, std::string_view name, std::string_view value) {
  checkStorable(section, {std::string(name), std::string(value)});
  for (Line& line : lines_) {
    if (!line.is(section, name)) continue;
    line.text = value;
    return;
  }
  lines_.insert(endOf(section), {section, std::string(name), std::string(value)});
}

/// Behind the last line of the section, which is begun when there is none.
std::vector<RegistryText::Line>::iterator RegistryText::endOf(Section section) {
  const auto last = std::find_if(lines_.rbegin(), lines_.rend(),
                                 [&](const Line& line) { return line.section == section; });
  if (last != lines_.rend()) return last.base();
  lines_.push_back({section, "", std::string(headingOf(section))});
  return lines_.end();
}

bool RegistryText::remove(Section section, std::string_view name) {
  return std::erase_if(lines_, [&](const Line& line) { return line.is(section, name); }) != 0;
}

std::string RegistryText::toString() const {
  std::string text;
  for (const Line& line : lines_)
    text += (line.name.empty() ? line.text : line.name + " = " + line.text) + "\n";
  return text;
}

}  // namespace velmora::com
