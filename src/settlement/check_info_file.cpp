#include "settlement/check_info_file.h"

#include <vector>

#include "settlement/install_folder.h"
#include "velmora/collections/dictionary.h"
#include "velmora/com/class_table.h"
#include "velmora/com/error.h"

namespace velmora::settlement {

using collections::Dictionary;
using collections::DictionaryRef;
using collections::Variant;
using collections::Vector;

namespace {

constexpr const char* kSeparator = "--------------------------------------";

void requireWithinFolder(const std::string& fileName) {
  const bool leaves = fileName.find_first_of(std::string_view("/\\\0", 3)) != std::string::npos;
  if (!fileName.empty() && !leaves) return;
  throw com::Error(com::error::kInvalidArgument, "clsPublic",
                   "\"" + fileName +
                       "\" is no name of a file in the installation folder; expected "
                       "one without a folder");
}

/// The text file that is being written; closed in the end, on every path.
class InfoFile {
 public:
  explicit InfoFile(const std::string& fileName) {
    requireWithinFolder(fileName);
    const auto fileSystem = com::CreateObject("Scripting.FileSystemObject");
    file_ = com::call(*fileSystem, "CreateTextFile", GetInstallFolder() + fileName + ".txt", true,
                      false)
                .toObject<com::IDispatch>();
    separate();
    write(fileName);
    separate();
  }
  ~InfoFile() {
    try {
      com::call(*file_, "Close");
    } catch (...) {
      // Reached only when writing has failed already.
    }
  }
  InfoFile(const InfoFile&) = delete;
  InfoFile& operator=(const InfoFile&) = delete;

  void separate() { write(kSeparator); }

  void writeRow(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i > 0) line += "\t| ";
      line += cells[i];
    }
    write(line);
  }

  void finish(std::int64_t rows) {
    separate();
    write("合计记录行数：" + std::to_string(rows) + "\r\n");
    write("");
    com::call(*file_, "Close");
  }

 private:
  void write(const std::string& line) { com::call(*file_, "WriteLine", line); }

  com::Ref<com::IDispatch> file_;
};

std::string textOf(const Variant& value) {
  return value.isNull() ? std::string() : value.toText();
}

DictionaryRef rowOf(const Vector& rows, std::size_t index) {
  const Variant& item = rows.Item(index);
  auto row = item.type() == collections::VarType::object ? item.toObject().as<Dictionary>()
                                                         : DictionaryRef();
  if (row) return row;
  throw com::Error(com::error::kTypeMismatch, "clsPublic",
                   "row " + std::to_string(index + 1) + " is no Dictionary");
}

}  // namespace

void WriteCheckInfoByVector(const Vector& rows, const std::string& sFileName) {
  InfoFile file(sFileName);
  std::vector<std::string> cells;
  if (rows.Size() > 0) {
    const DictionaryRef first = rowOf(rows, 0);
    for (std::size_t i = 0; i < first->Count(); ++i) cells.push_back(first->Key(i));
  }
  file.writeRow(cells);
  file.separate();
  for (std::size_t index = 0; index < rows.Size(); ++index) {
    const DictionaryRef row = rowOf(rows, index);
    cells.clear();
    for (std::size_t i = 0; i < row->Count(); ++i) cells.push_back(textOf(row->Item(i)));
    file.writeRow(cells);
  }
  file.finish(static_cast<std::int64_t>(rows.Size()));
}

void WriteCheckInfoByRs(ado::Recordset& rows, const std::string& sFileName) {
  const std::int64_t count = rows.RecordCount();
  InfoFile file(sFileName);
  std::vector<std::string> cells;
  for (std::size_t i = 0; i < rows.fieldCount(); ++i) cells.push_back(rows.definition(i).name);
  file.writeRow(cells);
  file.separate();
  if (count > 0) rows.MoveFirst();
  for (; !rows.EOF_(); rows.MoveNext()) {
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = textOf(rows.GetValue(i));
    file.writeRow(cells);
  }
  file.finish(count);
}

}  // namespace velmora::settlement
