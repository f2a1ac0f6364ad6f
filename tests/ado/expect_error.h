#pragma once

#include <gmock/gmock.h>
#include <string>

#include "velmora/com/error.h"

namespace velmora::ado {

/// Runs `action`, which has to raise com::Error of this number with this in its text.
template <class Action>
void expectError(std::int32_t number, const std::string& part, Action action) {
  try {
    action();
    ADD_FAILURE() << "no error; expected one with \"" << part << '"';
  } catch (const com::Error& error) {
    EXPECT_EQ(error.number(), number) << error.description();
    EXPECT_THAT(error.description(), testing::HasSubstr(part));
  }
}

}  // namespace velmora::ado
