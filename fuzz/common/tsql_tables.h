#pragma once

#include <string_view>

namespace velmora::fuzz {

/// The tables that the generated statements name: every kind of type, Nulls, few rows.
inline constexpr std::string_view kTables =
    "create table doc (id int not null primary key, kind smallint, open_ bit, level tinyint, "
    "serial bigint, amount decimal(28,10), rate float, paid money, day datetime, code char(4), "
    "note varchar(20), name nvarchar(80)) "
    "create table entry (id int identity, doc int, line int not null, amount decimal(18,2), "
    "due datetime, item nvarchar(40) default 'x')";

inline constexpr std::string_view kRows =
    "insert into doc values (1, 5, 1, 3, 9000000000, 12.5, 0.1, 1.5, '2009-03-01', 'A', 'x', "
    "N'应收') "
    "insert into doc values (2, -1, 0, 0, -1, -0.0000000001, -1e10, -7, '1999-12-31 23:59:59.997', "
    "'b ', '12', 'acme') "
    "insert into doc values (3, 0, null, 255, 0, 0, 0, 0, '2012-02-29 08:30', '', '', '') "
    "insert into doc values (4, null, null, null, null, null, null, null, null, null, null, null) "
    "insert into doc values (5, 32767, 1, 1, 1, 999999999999999999.9999999999, 1e300, "
    "922337203685, "
    "'9999-12-31', '%_[]', '-1.50', N'Ａcme') "
    "insert into entry (doc, line, amount, due, item) values (1, 1, 10, '2009-03-31', 'a') "
    "insert into entry (doc, line, amount, due, item) values (1, 2, 2.5, null, 'b') "
    "insert into entry (doc, line, amount, due, item) values (2, 1, -0.01, '2009-04-30', null) "
    "insert into entry (doc, line, amount, due, item) values (null, 0, null, null, '')";

}  // namespace velmora::fuzz
