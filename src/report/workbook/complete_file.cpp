#include "report/workbook/complete_file.h"

#include <fmt/format.h>
#include <memory>
#include <string_view>
#include <unzip.h>
#include <vector>

namespace velmora::report::workbook {

namespace {

constexpr std::size_t kTagBytes = 256;

struct Close {
  void operator()(void* archive) const { unzClose(archive); }
};

/// The end tag of the outermost element of an XML text that starts so.
std::string endTag(std::string_view start) {
  std::size_t at = start.find("?>");
  at = start.find('<', at == std::string_view::npos ? 0 : at);
  if (at == std::string_view::npos) return "?";
  const std::string_view name = start.substr(at + 1, start.find_first_of(" />", at) - at - 1);
  return fmt::format("</{}>", name);
}

/// Whether the part that the archive stands on can be read to the end of its XML.
bool isWhole(unzFile archive) {
  if (unzOpenCurrentFile(archive) != UNZ_OK) return false;
  std::vector<char> piece(1U << 18U);
  std::string start, end;
  int size = 0;
  while ((size = unzReadCurrentFile(archive, piece.data(), static_cast<unsigned>(piece.size()))) >
         0) {
    const std::string_view read(piece.data(), static_cast<std::size_t>(size));
    if (start.empty()) start = read.substr(0, kTagBytes);
    end += read.size() > kTagBytes ? read.substr(read.size() - kTagBytes) : read;
    if (end.size() > kTagBytes) end.erase(0, end.size() - kTagBytes);
  }
  return unzCloseCurrentFile(archive) == UNZ_OK && size == 0 &&
         std::string_view(end).substr(0, end.find_last_not_of('\n') + 1).ends_with(endTag(start));
}

}  // namespace

std::string damageOf(const std::string& file) {
  const std::unique_ptr<void, Close> archive(unzOpen64(file.c_str()));
  if (!archive) return "the file is not complete; is the disk full?";
  int next = unzGoToFirstFile(archive.get());
  for (; next == UNZ_OK; next = unzGoToNextFile(archive.get())) {
    if (!isWhole(archive.get()))
      return "a part of it is not complete; is the folder of temporary files full?";
  }
  return next == UNZ_END_OF_LIST_OF_FILE ? "" : "the file is not complete; is the disk full?";
}

}  // namespace velmora::report::workbook
