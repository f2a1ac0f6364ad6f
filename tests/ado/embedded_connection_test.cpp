#include "ado/expect_error.h"
#include "velmora/ado/connection.h"

namespace velmora::ado {
namespace {

using collections::Decimal;

/// The provider that comes with the platform, without anybody registering it.
TEST(EmbeddedConnection, RunsBatchesByConnectionString) {
  auto connection = com::make<Connection>();
  connection->Open("Provider=Velmora.Embedded;Data Source=:memory:;Mode=ReadWrite");
  connection->CursorLocation(adUseClient);
  EXPECT_EQ(connection->Execute("set nocount on ")->State(), adStateClosed);
  connection->Execute(
      "create table #t (FID int, FName varchar(20), FAmount decimal(20,2)) "
      "insert into #t values (1, 'Acme', 10.5) insert into #t values (2, 'Other', null)");

  auto rs = com::make<Recordset>();
  rs->Open("select FID, FName, FAmount from #t order by FID select 7 as n", connection,
           adOpenStatic, adLockReadOnly);
  rs->ActiveConnection(nullptr);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields()("famount").Value(), Variant(Decimal::parse("10.50")));
  rs->Filter("FAmount = null and FName like 'oth*'");
  EXPECT_EQ(rs->Fields()("FID").Value(), Variant(2));
  EXPECT_EQ(rs->NextRecordset()->Fields()("n").Value(), Variant(7));
}

}  // namespace
}  // namespace velmora::ado
