#include "settlement/base_currency.h"

#include "velmora/com/context.h"
#include "velmora/com/error.h"
#include "velmora/public.h"

namespace velmora::settlement {

namespace {

constexpr const char* kBaseCurrency =
    "select fcurrencyid, fnumber, fname, fexchangerate, fscale from t_currency where fcurrencyid "
    "= 1";

}  // namespace

std::int32_t GetBaseCurrencyScale(const std::string& sDsn) {
  const auto queries = com::GetObjectContext().CreateInstance(_clsPublic::kProgId);
  const auto currency =
      com::call(*queries, "GetData", sDsn, kBaseCurrency).toObject<ado::Recordset>();
  if (currency->EOF_())
    throw com::Error(com::error::kInvalidArgument, "clsPublic",
                     "t_currency has no currency 1, the local one; expected its decimals");
  return currency->Fields()("FScale").Value().toInt32();
}

}  // namespace velmora::settlement
