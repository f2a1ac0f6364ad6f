#pragma once

#include <string>

namespace velmora::cli {

/// A file in the making: written under another name beside its own, which it takes
/// only when it is complete. What is not completed is removed, also when the program ends by
/// std::quick_exit. One at a time.
class NewFile {
 public:
  /// Raises Failure when `file` exists and `replace` is false, or is no plain file.
  NewFile(std::string file, bool replace);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Where to write.
  const std::string& unfinished() const noexcept { return unfinished_; }
  /// Gives the file its name. Raises Failure.
  void complete();

 private:
  std::string file_, unfinished_;
};

}  // namespace velmora::cli
