#pragma once

#include "cli/program.h"

namespace velmora::cli {

// Each adds its command to `program`; when the command line chooses it, `chosen`
// becomes what runs it.
void addDemo(CLI::App& program, Run& chosen);
void addCloseCheck(CLI::App& program, Run& chosen);
void addInitCheck(CLI::App& program, Run& chosen);
void addAccountCheck(CLI::App& program, Run& chosen);
void addPeriodChange(CLI::App& program, Run& chosen);
void addReconcile(CLI::App& program, Run& chosen);
void addReport(CLI::App& program, Run& chosen);
void addTrace(CLI::App& program, Run& chosen);
void addSettle(CLI::App& program, Run& chosen);
void addDistribute(CLI::App& program, Run& chosen);
void addDefaultAccount(CLI::App& program, Run& chosen);
void addFinDate(CLI::App& program, Run& chosen);
void addSql(CLI::App& program, Run& chosen);
void addCopy(CLI::App& program, Run& chosen);
void addScript(CLI::App& program, Run& chosen);
void addCall(CLI::App& program, Run& chosen);
void addRegistration(CLI::App& program, Run& chosen);

}  // namespace velmora::cli
