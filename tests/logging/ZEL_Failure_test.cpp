//===- ZEL_Failure_test.cpp - Failures, codes and messages ------------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

TEST(ZEL_Failure, StatusIsDecidedByTheCode) {
  ZEL_Failure internal(ZEL_Code("142737310812"), "broken", "[hdr] ");
  ZEL_Failure user(ZEL_Code(std::string()), "bad input", "");
  EXPECT_TRUE(internal.GetCode().exists());
  EXPECT_FALSE(user.GetCode().exists());
  EXPECT_EQ(internal.GetStatusCode(), ERR_INTERNAL);
  EXPECT_EQ(user.GetStatusCode(), ERR_USER);
  EXPECT_EQ(user.GetName(), "ZEL_Failure");
  EXPECT_STREQ(internal.what(), "broken");
  EXPECT_EQ(internal.GetHeader(), "[hdr] ");
  EXPECT_EQ(internal.GetReason(), nullptr);
}

TEST(ZEL_Failure, CloneCopyAndAssignmentAreDeep) {
  ZEL_Failure root(ZEL_Code("095024130912"), "root cause", "[a] ");
  ZEL_Failure middle(root, ZEL_Code(), "middle", "[b] ");
  auto top = std::make_unique<ZEL_Failure>(middle, ZEL_Code("183807301111"), "top", "[c] ");
  std::unique_ptr<ZEL_Exception> clone(top->Clone());
  ASSERT_NE(clone->GetReason(), nullptr);
  ASSERT_NE(clone->GetReason()->GetReason(), nullptr);
  EXPECT_EQ(clone->GetReason()->GetReason()->GetReason(), nullptr);
  EXPECT_EQ(clone->GetMessage() + clone->GetReason()->GetMessage(), "topmiddle");
  EXPECT_EQ(clone->GetReason()->GetReason()->GetCode().GetCode(), "095024130912");
  // Independent: no node of the clone is a node of the source.
  EXPECT_NE(clone->GetReason(), top->GetReason());
  EXPECT_NE(clone->GetReason()->GetReason(), top->GetReason()->GetReason());
  const ZEL_Exception* sourceRoot = top->GetReason()->GetReason();
  clone.reset();
  EXPECT_EQ(sourceRoot->GetMessage(), "root cause");
  top.reset();
  EXPECT_EQ(middle.GetReason()->GetMessage(), "root cause");

  ZEL_Failure b(ZEL_Code("1"), "b", "");
  b = middle;
  EXPECT_EQ(b.GetMessage(), "middle");
  EXPECT_FALSE(b.GetCode().exists());
  EXPECT_NE(b.GetReason(), middle.GetReason());
  b = b; // self-assignment keeps the chain
  ASSERT_NE(b.GetReason(), nullptr);
  EXPECT_EQ(b.GetReason()->GetMessage(), "root cause");
}

TEST(ZEL_MESSAGE, FormatsAndCutsAt1023Characters) {
  EXPECT_EQ(ZEL_MESSAGE("line %d of %s", 7, "f.par"), "line 7 of f.par");
  EXPECT_EQ(ZEL_MESSAGE("%s", ""), "");
  EXPECT_EQ(ZEL_MESSAGE("%s!", std::string(3000, 'x').c_str()), std::string(1023, 'x'));
  EXPECT_EQ(ZEL_MESSAGE("%s", std::string(1023, 'y').c_str()), std::string(1023, 'y'));
}
