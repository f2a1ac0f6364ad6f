#include "platform/host/file_system_object.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/host/ansi_encoder.h"
#include "velmora/com/error.h"

namespace velmora::host {

namespace {

constexpr const char* kProgId = "Scripting.FileSystemObject";

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

/// A text file that is being written.
class TextStream final : public com::DispatchObject<TextStream> {
 public:
  TextStream(std::string fileName, bool overwrite)
      : encoder_(AnsiEncoder::configured()),
        fileName_(std::move(fileName)),
        file_(std::fopen(fileName_.c_str(), overwrite ? "wb" : "wbx")) {
    if (!file_) fail();
  }

  static const com::DispatchTable<TextStream>& dispatchTable() {
    static const auto table = [] {
      auto made = std::make_unique<com::DispatchTable<TextStream>>(
          "TextStream", "", com::Guid::parse("B8D1C2E7-51A4-4F0C-9C38-3E6A7D20F5B9"),
          com::IDispatch::kInterfaceId);
      made->method("WriteLine", &TextStream::WriteLine, {"text"});
      made->method("Close", &TextStream::Close, {});
      return made;
    }();
    return *table;
  }

  void WriteLine(const std::string& text) {
    if (!file_)
      throw com::Error(com::error::kFailed, kProgId, fileName_ + ": the file has been closed");
    const std::string line = encoder_.encoded(text) + "\r\n";
    if (std::fwrite(line.data(), 1, line.size(), file_.get()) != line.size()) fail();
  }

  /// Raises when what was written did not get to the file.
  void Close() {
    if (file_ && std::fclose(file_.release()) != 0) fail();
  }

 private:
  [[noreturn]] void fail() const {
    throw com::Error(com::error::kFailed, kProgId,
                     fileName_ + ": cannot be written: " + std::strerror(errno));
  }

  AnsiEncoder encoder_;
  std::string fileName_;
  std::unique_ptr<std::FILE, CloseFile> file_;
};

}  // namespace

const com::DispatchTable<FileSystemObject>& FileSystemObject::dispatchTable() {
  static const auto table = [] {
    auto made = std::make_unique<com::DispatchTable<FileSystemObject>>(
        "FileSystemObject", kProgId, com::Guid::parse("4F2A9D60-7C1B-4E85-A3D9-18B60E5C7742"),
        com::IDispatch::kInterfaceId);
    made->method("CreateTextFile", &FileSystemObject::CreateTextFile,
                 {"fileName", {"overwrite", true}, {"unicode", false}});
    return made;
  }();
  return *table;
}

com::Ref<com::IUnknown> FileSystemObject::CreateTextFile(const std::string& fileName,
                                                         bool overwrite, bool unicode) {
  if (unicode)
    throw com::Error(com::error::kNotImplemented, kProgId,
                     fileName + ": Unicode text files are not offered; expected unicode false");
  return com::make<TextStream>(fileName, overwrite);
}

}  // namespace velmora::host
