-- Select lists, aliases, stars
select a, b c, d as e, f 'g h', N'i' j, [k l].*, m = n + 1, t1.[o]]p] from t1, [k l]
--> SELECT a, b AS c, d AS e, f AS [g h], N'i' AS j, [k l].*, n + 1 AS m, t1.[o]]p] FROM t1, [k l];
select distinct top 10 dbo.t.a, db..t.b from db..t
--> SELECT DISTINCT TOP (10) dbo.t.a, db..t.b FROM db..t;
select all top (@n + 1) "order", [plain], 科目 as 名称 from "group" as g
--> SELECT TOP (@n + 1) [order], plain, 科目 AS 名称 FROM [group] AS g;

-- Words of the language that are free as names
select year, month, name, type, date, value, first, text, status, level, max, cast, rollup from count
--> SELECT year, month, name, type, date, value, first, text, status, level, max, cast, rollup FROM count;

-- Operators from tight to loose
select -7/2 a, 7%3 b, 5&1 | 6 ^ ~2 c, 2+3*4 d, (2+3)*4 e, 10-(2-3) f, 10-2-3 g, - -1 h, -(a+b) i, +a*b j, ~(a&b) k
--> SELECT -7 / 2 AS a, 7 % 3 AS b, 5 & 1 | 6 ^ ~2 AS c, 2 + 3 * 4 AS d, (2 + 3) * 4 AS e, 10 - (2 - 3) AS f, 10 - 2 - 3 AS g, -(-1) AS h, -(a + b) AS i, +a * b AS j, ~(a & b) AS k;
select s from t where s & 1 = 1 and ( s & 16 )=0 or not a = 1 and b<3 or c !> 4 and not (d !< 5 or e != 6)
--> SELECT s FROM t WHERE s & 1 = 1 AND s & 16 = 0 OR NOT a = 1 AND b < 3 OR c <= 4 AND NOT (d >= 5 OR e <> 6);
select 1 from t where a between 1+1 and 5 and b not between 'x' and N'y''z' and c in (1,-2,a*b) and d not in (select x from y) and not exists(select * from z) and ((e is null) or f is not null)
--> SELECT 1 FROM t WHERE a BETWEEN 1 + 1 AND 5 AND b NOT BETWEEN 'x' AND N'y''z' AND c IN (1, -2, a * b) AND d NOT IN (SELECT x FROM y) AND NOT EXISTS (SELECT * FROM z) AND (e IS NULL OR f IS NOT NULL);
select 1 from t where k like 'F%' + @p and n not like '10!%' escape '!' and not not (a = 1)
--> SELECT 1 FROM t WHERE k LIKE 'F%' + @p AND n NOT LIKE '10!%' ESCAPE '!' AND NOT NOT a = 1;
select 1 from t where a < > 1 and b > = 2 and c ! = 3 and (a) = (b) and ((a = b))
--> SELECT 1 FROM t WHERE a <> 1 AND b >= 2 AND c <> 3 AND a = b AND a = b;

-- Literals
select 1, 1.10, .5, 1., 1e3, 1.5E-3, 0x1F, 0x, 'it''s', N'应收', n'x', '', null, ?, @v, @@ROWCOUNT, ?
--> SELECT 1, 1.10, .5, 1., 1e3, 1.5E-3, 0x1F, 0x, 'it''s', N'应收', N'x', '', NULL, ?, @v, @@rowcount, ?;
select 1else_, 2 e, 3.a
--> SELECT 1 AS else_, 2 AS e, 3. AS a;

-- Case, conversions, calls
select case t when 5 then (case p when -1 then 'refund' else 'advance' end) when 6 then 'payment' end, sum((case when v1.ftype = 5 or v1.ftype=16 then -1 else 1 end ) * v2.famountfor   ) as FAmountFor from t
--> SELECT CASE t WHEN 5 THEN CASE p WHEN -1 THEN 'refund' ELSE 'advance' END WHEN 6 THEN 'payment' END, sum(CASE WHEN v1.ftype = 5 OR v1.ftype = 16 THEN -1 ELSE 1 END * v2.famountfor) AS FAmountFor FROM t;
select cast(a as Decimal(28, 4)), CAST(b AS nvarchar(max)), convert(datetime,convert(varchar(30),getdate(),111)), Convert(int, '') from t
--> SELECT cast(a AS decimal(28,4)), cast(b AS nvarchar(max)), convert(datetime, convert(varchar(30), getdate(), 111)), convert(int, '') FROM t;
select count(*), COUNT(distinct a), left(b, 2), Right(b, 1), coalesce(a, nullif(b, '')), isnull(c, 0), dateadd(month, 1, d), row_number() over (partition by a, b order by c desc, d asc), rank() over(order by a) from t
--> SELECT count(*), count(DISTINCT a), left(b, 2), right(b, 1), coalesce(a, nullif(b, '')), isnull(c, 0), dateadd(month, 1, d), row_number() OVER (PARTITION BY a, b ORDER BY c DESC, d), rank() OVER (ORDER BY a) FROM t;
select (select max(a) from t) x, ((select 1)) y, ((select 1) union (select 2)) z, ((select 1) + 1) w
--> SELECT (SELECT max(a) FROM t) AS x, (SELECT 1) AS y, (SELECT 1 UNION SELECT 2) AS z, (SELECT 1) + 1 AS w;

-- Joins
select * from #a a left outer join b on a.i=b.i and a.t in(5,6) inner join c on (b.j = c.j) right join d on 1=1 full outer join e on 1=1 cross join f, g join h on g.x = h.x
--> SELECT * FROM #a AS a LEFT JOIN b ON a.i = b.i AND a.t IN (5, 6) INNER JOIN c ON b.j = c.j RIGHT JOIN d ON 1 = 1 FULL JOIN e ON 1 = 1 CROSS JOIN f, g INNER JOIN h ON g.x = h.x;
select 1 from ((a join b on a.x=b.x) left join c on b.y=c.y) inner join (d cross join e) on 1=1
--> SELECT 1 FROM a INNER JOIN b ON a.x = b.x LEFT JOIN c ON b.y = c.y INNER JOIN (d CROSS JOIN e) ON 1 = 1;
select 1 from a join b join c on b.x=c.x on a.x=b.x
--> SELECT 1 FROM a INNER JOIN (b INNER JOIN c ON b.x = c.x) ON a.x = b.x;
select k.s from (select a s from t union all select b from u) k, (select 1, 2) as v(x, y), ((select 1 x) union (select 2)) w
--> SELECT k.s FROM (SELECT a AS s FROM t UNION ALL SELECT b FROM u) AS k, (SELECT 1, 2) AS v (x, y), (SELECT 1 AS x UNION SELECT 2) AS w;
select 1 from ((select 1 a) k join t on k.a=t.a)
--> SELECT 1 FROM (SELECT 1 AS a) AS k INNER JOIN t ON k.a = t.a;
select 1 from t with (nolock), u v with (nolock, rowlock), w (nolock) where 1=1
--> SELECT 1 FROM t, u AS v, w WHERE 1 = 1;

-- Grouping, ordering, unions
select a, sum(b) s from t group by a, upper(c) having sum(b) > 1 order by s desc, 1, a + b asc
--> SELECT a, sum(b) AS s FROM t GROUP BY a, upper(c) HAVING sum(b) > 1 ORDER BY s DESC, 1, a + b;
select a from t group by a,b with rollup select 2
--> SELECT a FROM t GROUP BY a, b WITH ROLLUP;
--> SELECT 2;
select grouping(a) from t group by rollup(a, b)
--> SELECT grouping(a) FROM t GROUP BY a, b WITH ROLLUP;
select a from t union select b from u union all (select c from v union select d from w) order by 1
--> SELECT a FROM t UNION SELECT b FROM u UNION ALL (SELECT c FROM v UNION SELECT d FROM w) ORDER BY 1;
(select 1 union select 2) union all select 3
--> (SELECT 1 UNION SELECT 2) UNION ALL SELECT 3;
with x as (select 1 a), y(b, c) as (select 1, 2 from x) select * from x, y
--> WITH x AS (SELECT 1 AS a), y (b, c) AS (SELECT 1, 2 FROM x) SELECT * FROM x, y;
select 1 with x as (select 2 a) select a from x
--> SELECT 1;
--> WITH x AS (SELECT 2 AS a) SELECT a FROM x;

-- Select into tables and variables
SELECT a, ''+ CAST(b.FID AS nvarchar(20)) FBillNo, null FNote INTO #tempCheckInfo FROM t_rp_checkentry a LEFT JOIN t_rp_newCheckInfo b on a.FID=b.FID
--> SELECT a, '' + cast(b.FID AS nvarchar(20)) AS FBillNo, NULL AS FNote INTO #tempCheckInfo FROM t_rp_checkentry AS a LEFT JOIN t_rp_newCheckInfo AS b ON a.FID = b.FID;
select @lGLUseYear = convert(int, fvalue), @b = 2 from t_systemprofile where fcategory = 'GL'
--> SELECT @lGLUseYear = convert(int, fvalue), @b = 2 FROM t_systemprofile WHERE fcategory = 'GL';

-- Changes
insert into #AmtDetail (FYear,Fperiod) select 2009,3 from t_Account t1, t_item t10 where  t1.faccountid in (101,102) order by t1.FNumber, t10.fnumber
--> INSERT INTO #AmtDetail (FYear, Fperiod) SELECT 2009, 3 FROM t_Account AS t1, t_item AS t10 WHERE t1.faccountid IN (101, 102) ORDER BY t1.FNumber, t10.fnumber;
insert #t values(default, 1),(?, 'a' + 'b'); insert into t (select 1)
--> INSERT INTO #t VALUES (DEFAULT, 1), (?, 'a' + 'b');
--> INSERT INTO t SELECT 1;
insert into t(a) (select 1 union select 2)
--> INSERT INTO t (a) SELECT 1 UNION SELECT 2;
update v1 set v1.a = v1.a + u1.v , v1.b = default from #t v1 inner join (select n, sum(v) as v from #s group by n) u1 on (v1.n = u1.n) where v1.a <> 0
--> UPDATE v1 SET v1.a = v1.a + u1.v, v1.b = DEFAULT FROM #t AS v1 INNER JOIN (SELECT n, sum(v) AS v FROM #s GROUP BY n) AS u1 ON v1.n = u1.n WHERE v1.a <> 0;
Update #AmtCheck set FAcctNumber = FAcctNumber + '(小计)' where fsumsort = 101;update #t set a = a + 1
--> UPDATE #AmtCheck SET FAcctNumber = FAcctNumber + '(小计)' WHERE fsumsort = 101;
--> UPDATE #t SET a = a + 1;
delete #t delete from t where a = 1 delete v1 from #t v1 join u on v1.a=u.a
--> DELETE FROM #t;
--> DELETE FROM t WHERE a = 1;
--> DELETE FROM v1 FROM #t AS v1 INNER JOIN u ON v1.a = u.a;
truncate table dbo.t
--> TRUNCATE TABLE dbo.t;

-- Definitions
create table #ErrorInfo( FID int identity primary key, FChkItem nvarchar(200) default(''), FTypeID int default(0) , -- kind
  FChkType int default -1 not null, [FAmount] [decimal](28,4) null constraint DF_x default ((0)) )
--> CREATE TABLE #ErrorInfo (FID int IDENTITY(1,1) PRIMARY KEY, FChkItem nvarchar(200) DEFAULT '', FTypeID int DEFAULT 0, FChkType int NOT NULL DEFAULT -1, FAmount decimal(28,4) NULL DEFAULT 0);
create table dbo.t(a int identity(-5,10) unique nonclustered, b sysname, c numeric, d float(53), e datetime2(3), f char(1) default('x'), g time, constraint PK_t primary key clustered (a, b desc), unique(c asc)) on [primary]
--> CREATE TABLE dbo.t (a int IDENTITY(-5,10) UNIQUE, b nvarchar(128), c decimal, d float(53), e datetime2(3), f char(1) DEFAULT 'x', g time, PRIMARY KEY (a, b DESC), UNIQUE (c));
create unique clustered index i1 on #t(fyear, n desc) create nonclustered index i2 on t(a) on [primary] create index idx on t(a)
--> CREATE UNIQUE INDEX i1 ON #t (fyear, n DESC);
--> CREATE INDEX i2 ON t (a);
--> CREATE INDEX idx ON t (a);
create view dbo.v(a, b) as select 1, 2 from t create view w as (select 1 x) union select 2
--> CREATE VIEW dbo.v (a, b) AS SELECT 1, 2 FROM t;
--> CREATE VIEW w AS SELECT 1 AS x UNION SELECT 2;
drop table #a, dbo.b drop table if exists c; drop view v, w; drop index i on t drop index dbo.t.i
--> DROP TABLE #a, dbo.b;
--> DROP TABLE IF EXISTS c;
--> DROP VIEW v, w;
--> DROP INDEX i ON t;
--> DROP INDEX i ON dbo.t;

-- Variables, options, flow
declare @a int, @b as nvarchar(20) = N'x' declare @c decimal(18, 2) set @a = 1 set @B=@a*(2+1)
--> DECLARE @a int, @b nvarchar(20) = N'x';
--> DECLARE @c decimal(18,2);
--> SET @a = 1;
--> SET @B = @a * (2 + 1);
set nocount on set ANSI_NULLS, quoted_identifier on; set transaction isolation level read UnCommitted SET TRANSACTION ISOLATION LEVEL serializable set xact_abort off set numeric_roundabort off
--> SET NOCOUNT ON;
--> SET ANSI_NULLS, QUOTED_IDENTIFIER ON;
--> SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED;
--> SET TRANSACTION ISOLATION LEVEL SERIALIZABLE;
--> SET XACT_ABORT OFF;
--> SET NUMERIC_ROUNDABORT OFF;
if exists (select * from dbo.sysobjects where id = object_id(N'[dbo].[t]') and xtype = 'u') select 1 else select 2
--> IF EXISTS (SELECT * FROM dbo.sysobjects WHERE id = object_id(N'[dbo].[t]') AND xtype = 'u') SELECT 1 ELSE SELECT 2;
if not exists(select 1) or @a = 1 Begin select 1; ; set @a = 2 End Else if @b > 1 begin print 'x' + @c end; else begin begin select 3 end end select 4
--> IF NOT EXISTS (SELECT 1) OR @a = 1 BEGIN SELECT 1; SET @a = 2; END ELSE IF @b > 1 BEGIN PRINT 'x' + @c; END ELSE BEGIN BEGIN SELECT 3; END; END;
--> SELECT 4;
if @a = 1 if @b = 2 select 1 else select 2
--> IF @a = 1 IF @b = 2 SELECT 1 ELSE SELECT 2;
begin tran commit begin transaction t1; rollback tran t1 commit work rollback
--> BEGIN TRANSACTION;
--> COMMIT;
--> BEGIN TRANSACTION;
--> ROLLBACK;
--> COMMIT;
--> ROLLBACK;

-- Comments, blanks, separators
;; select 1 /* a /* nested */ ' */ -- rest
, 2　,	3;
--> SELECT 1, 2, 3;
/* nothing but a comment */
-->
