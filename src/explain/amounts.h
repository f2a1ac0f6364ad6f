#pragma once

#include "velmora/collections/decimal.h"

namespace velmora::explain {

using collections::Decimal;

/// What is compared, in one kind of currency. An initial comparison has a balance only.
struct Measures {
  Decimal opening = {}, debit = {}, credit = {}, balance = {};

  bool isZero() const {
    return opening.isZero() && debit.isZero() && credit.isZero() && balance.isZero();
  }
  Measures& operator+=(const Measures& other) {
    opening += other.opening;
    debit += other.debit;
    credit += other.credit;
    balance += other.balance;
    return *this;
  }
  Measures& operator-=(const Measures& other) {
    opening -= other.opening;
    debit -= other.debit;
    credit -= other.credit;
    balance -= other.balance;
    return *this;
  }
  bool operator==(const Measures&) const = default;
};

/// In local currency, and in the currency of the documents.
struct Amounts {
  Measures local, original;

  bool isZero() const { return local.isZero() && original.isZero(); }
  Amounts& operator+=(const Amounts& other) {
    local += other.local;
    original += other.original;
    return *this;
  }
  Amounts& operator-=(const Amounts& other) {
    local -= other.local;
    original -= other.original;
    return *this;
  }
  bool operator==(const Amounts&) const = default;
  friend Amounts operator-(Amounts a, const Amounts& b) { return a -= b; }
};

}  // namespace velmora::explain
