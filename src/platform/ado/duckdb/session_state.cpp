#include "platform/ado/duckdb/session_state.h"

#include "platform/ado/duckdb/engine_error.h"

namespace velmora::ado::embedded {

void beginTransaction(SessionState& state) {
  if (state.transactions == 0) {
    state.session.run("begin transaction");
    state.catalog.beginTransaction();
  }
  ++state.transactions;
}

void commitTransaction(SessionState& state) {
  if (state.transactions == 0)
    throwError("3902: The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
  if (state.transactions > 1) {
    --state.transactions;
    return;
  }
  state.session.commit();
  state.transactions = 0;
  state.catalog.commitTransaction();
}

void rollbackTransaction(SessionState& state) {
  if (state.transactions == 0)
    throwError("3903: The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION.");
  state.transactions = 0;
  state.session.rollback();
  state.catalog.rollbackTransaction();
  state.functions.forget();
}

}  // namespace velmora::ado::embedded
