#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "velmora/collections/vector.h"

namespace velmora {

/// How a query names the columns of the four dimensions.
struct DimensionColumns {
  std::string_view alias;  ///< of the table that has them
  std::string_view department, employee, contact, currency;
};

/// One table request a name.
collections::VectorRef tableRequests(std::initializer_list<std::string_view> tables);

/// The basic-data tables of the four dimensions.
collections::VectorRef dimensionTables();

/// One column request a dimension.
collections::VectorRef columnRequests(const DimensionColumns& columns);

/// The request for a query over the basic-data table itself, which it reads as `alias`.
collections::VectorRef tableColumnRequest(std::string_view table, std::string_view alias,
                                          std::string_view key);

}  // namespace velmora
