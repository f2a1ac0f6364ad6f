#pragma once

// The public classes of the component, as clients see them. Create an object by
// its ProgID with com::CreateObject (or through an object context) and take the
// typed interface with `as<...>()`, or call it late-bound by the names below.
//
// Shared by every operation:
//
// `sDsn` is the suite's connection string, "key=value" pairs separated by ";",
// values optionally in braces: "ConnectString={ADO connection string};
// LANGUAGE=chs|CHT|EN;SubID=AR;UserName=...". LANGUAGE is "chs" when absent.
//
// Option and filter dictionaries match keys without regard to case; an absent key
// means the default given with the operation. A dictionary taken by `DictionaryRef&`
// comes back with what the operation wrote into it.
//
// Recordsets come back client-side, static, read-only and disconnected, except
// those an operation builds in memory.
//
// Unless told otherwise an operation raises nothing: it answers false, nothing, ""
// or its fallback value, and the reason is the thread's com::GetErrorInfo().

#include "velmora/check.h"
#include "velmora/init_bal_check.h"
#include "velmora/public.h"
