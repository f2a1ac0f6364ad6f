-- Row access: which customers, suppliers, departments, employees and currencies a
-- user may see. A user is known by his id, the key UserID of the caller's string.

-- Whether row access is in force for a user; the row of user 0 is for everyone
-- without a row of their own, callers without a user id included. No row at all: not
-- in force.
create table t_AccessSwitch (
    FUserID int not null primary key,
    FUsed bit not null default 0
)
GO

-- The records a user may see, one row each: FTableName is t_Item, t_Department,
-- t_Emp or t_Currency and FKeyID the record's key there. A user without rows for a
-- table sees all of it; a row with key -1 alone shows nothing of it. A document or
-- balance that names no record of a table (no department, say) is not restricted by
-- that table's rows. t_Item holds customers and suppliers alike: who is given some
-- customers sees the suppliers that are given to him too, and no others.
create table t_AccessRule (
    FUserID int not null,
    FTableName varchar(50) not null,
    FKeyID int not null,
    primary key (FUserID, FTableName, FKeyID)
)
GO
