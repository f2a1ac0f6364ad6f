#include "velmora/com/error.h"

#include <gtest/gtest.h>
#include <new>
#include <stdexcept>
#include <thread>

#include "velmora/com/context.h"

namespace velmora::com {
namespace {

template <class Exception>
ErrorInfo infoOf(const Exception& exception) {
  try {
    throw exception;
  } catch (...) {
    return currentErrorInfo("item 7");
  }
}

TEST(ErrorInfo, TakesTheExceptionApart) {
  const ErrorInfo own = infoOf(Error(error::kProvider, "ADODB.Connection", "syntax"));
  EXPECT_EQ(own.number, error::kProvider);
  EXPECT_EQ(own.source, "ADODB.Connection");
  EXPECT_EQ(own.description, "syntax");
  EXPECT_EQ(own.place, "item 7");

  const ErrorInfo standard = infoOf(std::out_of_range("too far"));
  EXPECT_EQ(standard.number, error::kFailed);
  EXPECT_EQ(standard.source, "Velmora");
  EXPECT_EQ(standard.description, "too far");

  EXPECT_EQ(infoOf(std::bad_alloc()).number, error::kFailed);
  EXPECT_EQ(infoOf(42).description, "unknown exception");
}

TEST(ErrorInfo, StaysUntilClearedAndBelongsToItsThread) {
  SetErrorInfo({error::kOverflow, "source", "first", ""});
  std::thread([] {
    EXPECT_FALSE(GetErrorInfo());
    SetErrorInfo({error::kFailed, "source", "other thread", ""});
  }).join();
  ASSERT_TRUE(GetErrorInfo());
  EXPECT_EQ(GetErrorInfo()->description, "first");
  ClearErrorInfo();
  EXPECT_FALSE(GetErrorInfo());
}

TEST(ObjectContext, KeepsTheLastVoteOfItsThread) {
  GetObjectContext().reset();
  EXPECT_EQ(GetObjectContext().vote(), Vote::none);
  GetObjectContext().SetComplete();
  GetObjectContext().SetAbort();
  std::thread([] {
    EXPECT_EQ(GetObjectContext().vote(), Vote::none);
    GetObjectContext().SetComplete();
  }).join();
  EXPECT_EQ(GetObjectContext().vote(), Vote::abort);
  GetObjectContext().reset();
  EXPECT_EQ(GetObjectContext().vote(), Vote::none);
}

}  // namespace
}  // namespace velmora::com
