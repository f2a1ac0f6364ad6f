#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "velmora/com/registry.h"

namespace velmora::com {

/// The content of one registry layer. The lines of a file that say nothing
/// (comments, blank lines) stay where they stand.
class RegistryText {
 public:
  enum class Section { none, classes, settings };
  struct Entry {
    std::string name;
    std::string value;
  };

  RegistryText() = default;
  /// Parses a file's text; `path` is for messages. Raises com::Error naming file
  /// and line for a line that is neither section, good entry nor comment.
  RegistryText(std::string_view text, const std::string& path);

  /// The entry under `name`, letter case ignored.
  std::optional<Entry> find(Section section, std::string_view name) const;
  std::vector<Entry> entries(Section section) const;
  /// Adds or replaces. Raises kInvalidArgument for what would not read back as it is.
  void put(Section section, std::string_view name, std::string_view value);
  /// Whether it was there.
  bool remove(Section section, std::string_view name);

  std::string toString() const;

 private:
  struct Line {
    Section section = Section::none;
    std::string name;  // empty for every line but an entry
    std::string text;  // the value of an entry, else the whole line

    bool is(Section wantedSection, std::string_view wantedName) const noexcept;
  };

  void parseLine(std::string_view line);
  std::vector<Line>::iterator endOf(Section section);

  std::vector<Line> lines_;
};

/// An entry of the classes, whose value is "{class id} library". Raises
/// std::invalid_argument saying what is wrong.
RegisteredClass toRegisteredClass(const RegistryText::Entry& entry);

}  // namespace velmora::com
