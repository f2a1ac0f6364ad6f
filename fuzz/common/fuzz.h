#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What the fuzz programs share. Each feeds any bytes to one reader of the system and ends
/// the process where the reader does what it must not: crash, leak, hang, raise something
/// that is not meant for people, or read back differently what it wrote.
namespace velmora::fuzz {

/// `holds`, or the process ends, naming what is wrong and showing `detail`.
void require(bool holds, std::string_view what, std::string_view detail);

/// Ends the process where `message`, an error that people read, has words of the C++ library
/// or of the engine that are not in `input`, what the person wrote.
void requireReadable(std::string_view message, std::string_view input);

/// requireReadable; also SQL Server's number or a form of our own, and the place in the batch.
void requireSqlError(std::string_view message, std::string_view batch);

/// A file in memory, for readers that want a path.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content);
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();
  const std::string& path() const noexcept { return path_; }

 private:
  int descriptor_;
  std::string path_;
};

/// The whole file `name` of this folder.
std::string sourceFile(std::string_view name);

/// One input; each program has its own.
void run(std::string_view input);

}  // namespace velmora::fuzz
