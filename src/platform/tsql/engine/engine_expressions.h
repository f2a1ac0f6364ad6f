#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// DuckDB expressions for what its own functions do otherwise than SQL Server's.
/// Arguments and results are DuckDB SQL; errors are raised where a row reaches them, the
/// text beginning with SQL Server's number. NULL in, NULL out.
namespace velmora::tsql::engine {

/// a / b cut towards zero, a % b, and a / b of floats; see values/arithmetic.h.
std::string quotient(std::string_view a, std::string_view b);
std::string remainder(std::string_view a, std::string_view b);
std::string ratio(std::string_view a, std::string_view b);
/// A float, or a real, that is not beyond the type's range: error 8115.
std::string finite(std::string_view value, bool real);

/// `body`, which says the values as onceName(0), onceName(1), ...; each is computed once and
/// stands in the text once. The body must hold no query.
std::string once(std::span<const std::string> values, std::string_view body);
std::string onceName(std::size_t index);

}  // namespace velmora::tsql::engine
