#pragma once

#include <gtest/gtest.h>
#include <string>

#include "running_program.h"

namespace velmora::cli {

/// The small demonstration set, made once for all tests of a suite.
class DemoSet : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new TestFolder;
    created_ = runVelmora({"demo", "create", demo()});
  }
  static void TearDownTestSuite() { delete folder_; }
  void SetUp() override { ASSERT_EQ(created_.status, 0) << created_.err; }

  static std::string demo() { return folder_->file("demo.db"); }

  static inline TestFolder* folder_ = nullptr;
  static inline Finished created_;
};

}  // namespace velmora::cli
