#include "frame/call/call_setup.h"

#include "velmora/com/error.h"

namespace velmora {

void CallSetup::PrepareDataSource(const std::string& sDsn) {
  parser_.reset();
  auto parser = std::make_shared<CParse>();
  if (!parser->ParseString(sDsn)) throw com::Error(com::error::kParseString, "ParseString", "");
  parser_ = std::move(parser);
  dataSource_ = std::make_unique<CDataSource>(parser_);
}

CDataSource& CallSetup::dataSource() const {
  if (!dataSource_)
    throw com::Error(com::error::kFailed, "CDataSource",
                     "no connection string yet; run an operation that takes sDsn first");
  return *dataSource_;
}

}  // namespace velmora
