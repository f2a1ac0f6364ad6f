#pragma once

#include <string>

#include "velmora/com/dispatch_table.h"

namespace velmora::host {

/// "Scripting.FileSystemObject", as far as text files are written with it.
class FileSystemObject final : public com::DispatchObject<FileSystemObject> {
 public:
  static const com::DispatchTable<FileSystemObject>& dispatchTable();

  /// A new text file, an object with WriteLine(text) and Close(); lines end in CR LF.
  /// `overwrite`: in place of one that is there. ANSI text in the configured code page;
  /// `unicode` (UTF-16) raises kNotImplemented. Raises kFailed naming the file and why it
  /// cannot be written.
  com::Ref<com::IUnknown> CreateTextFile(const std::string& fileName, bool overwrite, bool unicode);
};

}  // namespace velmora::host
