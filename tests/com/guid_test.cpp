#include "velmora/com/guid.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace velmora::com {
namespace {

TEST(Guid, ReadsItsTextFormsOnly) {
  const std::string text = "63674864-0585-4486-A941-A6C25DDC12F8";
  EXPECT_EQ(Guid::parse(text).toString(), text);
  EXPECT_EQ(Guid::parse("{63674864-0585-4486-a941-a6c25ddc12f8}"), Guid::parse(text));
  for (const char* bad :
       {"", "63674864-0585-4486-A941-A6C25DDC12F", "63674864-0585-4486-A941-A6C25DDC12FG",
        "636748640-585-4486-A941-A6C25DDC12F8", "{63674864-0585-4486-A941-A6C25DDC12F8"})
    EXPECT_THROW(Guid::parse(bad), std::invalid_argument) << bad;
}

}  // namespace
}  // namespace velmora::com
