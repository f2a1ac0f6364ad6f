#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/call/data_source.h"
#include "velmora/collections/dictionary.h"
#include "velmora/collections/vector.h"

namespace velmora {

// Row access: the suite may let a user see certain customers, suppliers, departments,
// employees and currencies only. The rules belong to the suite's services
// TirnBase.SecurityInfo and TirnBase.DataAccess; these functions ask them, as the user of
// the caller's connection string, for the SQL that holds a query to the rows he may see.
//
// A filter result is a Dictionary of
//   NeedAccess  Boolean; only when true the two texts are to be added to the query
//   From        join text, to be appended to the FROM clause
//   Where       condition, to be added with "and" to the WHERE clause
//
// When a service fails, the query goes unrestricted and the reason is the thread's error
// information.

/// The calling user's id, as the security service knows it. The service's errors pass through.
std::int32_t GetCurrentUserID(const CDataSource& dataSource);

/// Asks for the restriction of a query. `tables` holds a Dictionary per basic-data table
/// ("Table"); `columns` one per column of the query that refers to such a table:
/// "DataTable", "DataTableAs" (the table's alias in the join), "DataCol" (its key),
/// "BillTableAs" (alias of the referring table in the query), "BillCol" (its column).
/// `result` receives the filter result; not restricted when row access is switched off.
/// False when a service failed; `result` then holds what had been reached.
bool GetAccessFilter(const CDataSource& dataSource, const collections::VectorRef& tables,
                     const collections::VectorRef& columns, collections::DictionaryRef& result);

/// "(Select z.column FROM table z ... ) " over the rows of `table` that the user may see,
/// or "z.*" with `allColumns`; goes behind " in (" or in place of the table's name. An
/// empty `column` stands for FItemID. "" when row access is switched off or a service
/// failed: nothing is to be added then.
std::string BuildAccessSubquery(const CDataSource& dataSource, std::string_view table,
                                std::string_view column, bool allColumns);

/// " and t10.FItemID in (...) " for a query that reads t_item as t10; "" when nothing is to
/// be added.
std::string PermittedItemCondition(const CDataSource& dataSource);

// The dimensions of receivables and payables: department, employee, contact, currency.

/// Of documents with alias b: FDepartment, FEmployee, FCustomer, FCurrencyID.
collections::DictionaryRef DocumentAccessFilter(const CDataSource& dataSource);
/// The same columns with alias v1, for contact balances.
collections::DictionaryRef BalanceAccessFilter(const CDataSource& dataSource);
/// Of initial data with alias v1: FDepID, FEmpID, FComID, FCurrencyID.
collections::DictionaryRef InitDataAccessFilter(const CDataSource& dataSource);

/// A filter result without restriction.
collections::DictionaryRef NoAccessFilter();

}  // namespace velmora
