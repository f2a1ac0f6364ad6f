#pragma once

#include <functional>
#include <gmock/gmock.h>
#include <string>

#include "error_of.h"

namespace velmora::ado {

/// Runs `action`, which has to raise com::Error of this number with this in its text.
inline void expectError(std::int32_t number, const std::string& part,
                        const std::function<void()>& action) {
  const com::Error error = errorOf(action);
  EXPECT_EQ(error.number(), number) << error.description();
  EXPECT_THAT(error.description(), testing::HasSubstr(part));
}

}  // namespace velmora::ado
