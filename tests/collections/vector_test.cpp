#include "velmora/collections/vector.h"

#include <gtest/gtest.h>

#include "error_of.h"

namespace velmora::collections {
namespace {

TEST(Vector, KeepsOrderAndRefusesIndexesBeyondItsItems) {
  const auto vector = com::make<Vector>();
  vector->Add("a");
  vector->Add(2);
  vector->SetItem(0, "b");
  std::string text;
  for (const Variant& item : *vector) text += item.toText();
  EXPECT_EQ(text, "b2");
  for (const auto& attempt : std::vector<std::function<void()>>{[&] { vector->Item(2); },
                                                                [&] { vector->SetItem(2, 1); }}) {
    const auto error = errorOf(attempt);
    EXPECT_EQ(error.number(), com::error::kInvalidArgument);
    EXPECT_EQ(error.description(), "index 2 is out of range; the vector has 2 items");
  }
  vector->RemoveAll();
  EXPECT_EQ(vector->Size(), 0U);
}

}  // namespace
}  // namespace velmora::collections
