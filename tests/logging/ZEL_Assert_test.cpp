//===- ZEL_Assert_test.cpp - Assertion and termination handlers -------------===//
#include "TarnUtilities/logging/ZEL_ApplicationTerminator.h"
#include "TarnUtilities/logging/ZEL_Assert.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {
std::string g_seen; // what the recording handlers were given, '|'-separated

ZEL_Assert::FailureBehavior RecordingAssert(const char* expression, const char* message,
                                            const char* file, int line, const char* function) {
  g_seen = std::string(expression) + "|" + (message ? message : "(null)") + "|" + file + "|" +
           std::to_string(line) + "|" + function;
  return ZEL_Assert::Debug;
}

void RecordingTerminate(const char* expression, const char* message, const char* file, int line,
                        const char* function) {
  RecordingAssert(expression, message, file, line, function);
}
} // namespace

TEST(ZEL_Assert, ReplacedHandlersReceiveTheFormattedMessage) {
  ZEL_Assert::SetAssertHandler(&RecordingAssert);
  EXPECT_EQ(ZEL_Assert::ReportFailure("i < n", "f.cpp", 12, "Get", "i=%d n=%d", 5, 3),
            ZEL_Assert::Debug);
  EXPECT_EQ(g_seen, "i < n|i=5 n=3|f.cpp|12|Get");
  ZEL_Assert::ReportFailure("x", "f.cpp", 1, "F", nullptr);
  EXPECT_EQ(g_seen, "x|(null)|f.cpp|1|F");
  ZEL_Assert::ReportFailure("x", "f.cpp", 1, "F", "%s", std::string(5000, 'm').c_str());
  EXPECT_EQ(g_seen, "x|" + std::string(2047, 'm') + "|f.cpp|1|F");
  ZEL_Assert::SetAssertHandler(nullptr);
  EXPECT_EQ(ZEL_Assert::GetAssertHandler(), &ZEL_Assert::DefaultHandler);

  ZEL_ApplicationTerminator::SetTerminateHandler(&RecordingTerminate);
  ZEL_ApplicationTerminator::Terminate("e", "t.cpp", 3, "Fn", "code %d", -1);
  EXPECT_EQ(g_seen, "e|code -1|t.cpp|3|Fn");
  ZEL_ApplicationTerminator::Terminate("e", "t.cpp", 3, "Fn", nullptr);
  EXPECT_EQ(g_seen, "e|(null)|t.cpp|3|Fn");
  ZEL_ApplicationTerminator::SetTerminateHandler(nullptr);
  EXPECT_EQ(ZEL_ApplicationTerminator::GetTerminateHandler(),
            &ZEL_ApplicationTerminator::DefaultHandler);
}

TEST(ZEL_Assert, DefaultHandlersWriteTheReportAndHonourTheDebugFlag) {
  unsetenv("ZEL_ASSERT_DEBUG");
  testing::internal::CaptureStderr();
  EXPECT_EQ(ZEL_Assert::ReportFailure("p != 0", "a.cpp", 9, "Run", "value %d", 4),
            ZEL_Assert::Abort);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "(CRITICAL) File a.cpp, line 9:\nAssert failure in function Run:   'p != 0'   value 4\n");
  setenv("ZEL_ASSERT_DEBUG", "yes", 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ZEL_Assert::ReportFailure(nullptr, "a.cpp", 9, "Run", nullptr), ZEL_Assert::Debug);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "(CRITICAL) File a.cpp, line 9:\nAssert failure in function Run: \n");
  unsetenv("ZEL_ASSERT_DEBUG");
  // The terminator's report has no indent, and the default handler returns.
  testing::internal::CaptureStderr();
  ZEL_ApplicationTerminator::Terminate("errcode != STATUS_OK", "IntArray_F.cpp", 40,
                                       "IntArray_Init_F", "Failed to create an empty IntArray");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "(CRITICAL) File IntArray_F.cpp, line 40:\nFailure in function IntArray_Init_F: "
            "'errcode != STATUS_OK' Failed to create an empty IntArray\n");
}
