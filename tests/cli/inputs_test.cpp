#include "cli/inputs.h"

#include <gtest/gtest.h>

#include <fstream>

namespace quill::cli {
namespace {

TEST(Spool, WhatCannotBeReadIsNotTakenForEmpty) {
    std::ifstream directory("/");
    const auto spooled = spool(directory);
    ASSERT_FALSE(spooled);
    EXPECT_EQ(spooled.error().text, "Is a directory");
}

}  // namespace
}  // namespace quill::cli
