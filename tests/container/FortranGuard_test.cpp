//===- FortranGuard_test.cpp - The guard of the Fortran entry points --------===//
#include "container/FortranGuard.h"
#include "TarnUtilities/text/ZEL_CsvFileFailure.h"

#include <ace/Log_Msg.h>
#include <ace/Log_Msg_Callback.h>
#include <ace/Log_Record.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

TARN_FORTRAN_BINDING("Guarded_F");

// Keeps every line logged on this thread with the source file and line
// ACE was given for it.
struct LoggedLine {
  std::string text;
  std::string file;
  long line;
};

class LogCapture : public ACE_Log_Msg_Callback {
public:
  LogCapture() {
    ACE_Log_Msg* msg = ACE_Log_Msg::instance();
    previous_ = msg->msg_callback(this);
    msg->clr_flags(ACE_Log_Msg::STDERR);
    msg->set_flags(ACE_Log_Msg::MSG_CALLBACK);
  }
  ~LogCapture() override {
    ACE_Log_Msg* msg = ACE_Log_Msg::instance();
    msg->clr_flags(ACE_Log_Msg::MSG_CALLBACK);
    msg->set_flags(ACE_Log_Msg::STDERR);
    msg->msg_callback(previous_);
  }
  void log(ACE_Log_Record& record) override {
    ACE_Log_Msg* msg = ACE_Log_Msg::instance();
    lines.push_back({record.msg_data(), msg->file(), static_cast<long>(msg->linenum())});
  }
  std::vector<LoggedLine> lines;

private:
  ACE_Log_Msg_Callback* previous_;
};

// An exception that reports success.
class QuietException : public ZEL_Exception {
public:
  QuietException() : ZEL_Exception(ZEL_Code(), "all is well", "") {}
  ZEL_Exception* Clone() const override { return new QuietException(*this); }
  std::string GetName() const override { return "QuietException"; }
  ZelStatusCode GetStatusCode() const override { return STATUS_OK; }
};

const int kLine = 4711;

void Entry_F(std::int32_t* status, const std::function<ZelStatusCode()>& work) {
  ZEL_detail::GuardWithStatus(ZEL_detail::FortranSite{kBinding, __func__, kLine}, status, work);
}

int Terminating_F(const std::function<int()>& work) {
  return ZEL_detail::GuardOrTerminate(ZEL_detail::FortranSite{kBinding, __func__, kLine},
                                      "Failed to do the work", work);
}

} // namespace

TEST(FortranGuard, EachKindOfOutcomeGivesItsStatusAndLogText) {
  struct Case {
    const char* name;
    std::function<ZelStatusCode()> work;
    std::int32_t status;
    const char* log; // null: nothing is logged
  };
  const Case cases[] = {
      {"no exception", [] { return STATUS_OK; }, STATUS_OK, nullptr},
      {"own status", [] { return ERR_FILE_IO; }, ERR_FILE_IO, nullptr},
      {"ZEL_Failure", []() -> ZelStatusCode { throw ZEL_Failure(ZEL_Code(), "bad input", ""); },
       ERR_USER, "Failure in method Entry_F \nbad input"},
      {"ZEL_Exception's own status",
       []() -> ZelStatusCode { throw ZEL_CsvFileFailure(ZEL_Code("183807301111"), "disk", ""); },
       ERR_FILE_IO, "Failure in method Entry_F \ndisk"},
      {"standard exception", []() -> ZelStatusCode { throw std::runtime_error("no room"); },
       ERR_INTERNAL, "Failure in method Entry_F \nno room"},
      {"unknown exception", []() -> ZelStatusCode { throw 42; }, ERR_INTERNAL,
       "Unknown exception catched in method Entry_F \n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    LogCapture capture;
    std::int32_t status = 99;
    Entry_F(&status, c.work);
    EXPECT_EQ(status, c.status);
    Entry_F(nullptr, c.work); // a failure without a status is only logged
    if (!c.log) {
      EXPECT_TRUE(capture.lines.empty());
      continue;
    }
    ASSERT_EQ(capture.lines.size(), 2u);
    const std::string& text = capture.lines[0].text;
    EXPECT_EQ(text.rfind("(ERROR   ) [", 0), 0u) << text;
    EXPECT_NE(text.find("|TarnUtilities|Guarded_F] " + std::string(c.log) + "\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(capture.lines[0].file, "Guarded_F");
    EXPECT_EQ(capture.lines[0].line, kLine);
  }
}

TEST(FortranGuard, TerminatingGuardReportsAndExitsWithCodeOne) {
  const char* report = "File Guarded_F, line 4711:\nFailure in function Terminating_F: "
                       "'errcode != STATUS_OK' Failed to do the work";
  EXPECT_EXIT(Terminating_F([]() -> int { throw std::runtime_error("no room"); }),
              testing::ExitedWithCode(1), "Failure in method Terminating_F \nno room(.|\n)*" +
                                              std::string(report));
  EXPECT_EXIT(Terminating_F([]() -> int { throw ZEL_Failure(ZEL_Code(), "bad", ""); }),
              testing::ExitedWithCode(1), report);
  EXPECT_EXIT(Terminating_F([]() -> int { throw 1; }), testing::ExitedWithCode(1),
              "Unknown exception catched in method Terminating_F \n");
}

TEST(FortranGuard, TerminatingGuardReturnsTheResultOrQuietlyOnSuccessStatus) {
  LogCapture capture;
  EXPECT_EQ(Terminating_F([] { return 7; }), 7);
  EXPECT_EQ(Terminating_F([]() -> int { throw QuietException(); }), 0);
  EXPECT_TRUE(capture.lines.empty());
}
