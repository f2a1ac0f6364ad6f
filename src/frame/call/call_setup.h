#pragma once

#include <memory>
#include <string>

#include "frame/call/data_source.h"

namespace velmora {

/// What a public object keeps of its current call: the parsed connection string and
/// the data source made from it.
class CallSetup {
 public:
  /// Replaces both. Raises kParseString with source "ParseString" when the text cannot
  /// be parsed, kDuplicateKey when a key occurs twice.
  void PrepareDataSource(const std::string& sDsn);

  /// Raises kFailed when no operation of this object has set up a data source yet.
  CDataSource& dataSource() const;

  /// The data source of the last connection string that could be read; nothing when there
  /// was none.
  const CDataSource* lastDataSource() const noexcept { return dataSource_.get(); }

 private:
  // The data source goes first, then the parser.
  std::shared_ptr<const CParse> parser_;
  std::unique_ptr<CDataSource> dataSource_;
};

}  // namespace velmora
