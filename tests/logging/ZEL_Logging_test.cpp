//===- ZEL_Logging_test.cpp - Logger, destinations and failure reports ------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Logging.h"
#include "TarnUtilities/logging/ZEL_XmlString.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <future>
#include <mutex>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using testing::HasSubstr;
using testing::StartsWith;
using tarn_test::Wide;

namespace {

std::mutex g_linesMutex;
std::vector<std::string> g_lines;

void Collect(const char16_t* line) {
  std::lock_guard<std::mutex> lock(g_linesMutex);
  g_lines.push_back(TarnStringUtil::wide_to_utf8(line));
}

std::vector<std::string> Lines() {
  std::lock_guard<std::mutex> lock(g_linesMutex);
  return g_lines;
}

const char* const kHeader = "[%T|%n|%P|TarnUtilities|LoggingTest] ";

// Every test starts without a logger and a listener and leaves none behind.
class LoggingTest : public testing::Test {
protected:
  void SetUp() override {
    ZEL_Logging::Release();
    std::lock_guard<std::mutex> lock(g_linesMutex);
    g_lines.clear();
  }
  void TearDown() override {
    ZEL_Logging::RemoveListener();
    ZEL_Logging::Release();
  }

  // Starts the logger at `level` writing into a log file in the scratch
  // directory, with the collecting listener installed.
  void Start(ZEL_Loglevels::Level level, ZEL_LogConfig config = ZEL_LogConfig()) {
    config.level = level;
    if (config.logFile.empty())
      config.logFile = u"test.log";
    ZEL_Logging::Init("logtest", config, Wide(dir_.path()));
    ZEL_Logging::SetListener(&Collect);
  }
  std::string LogText() const { return tarn_test::ReadFile(dir_ / "test.log"); }

  tarn_test::TempDir dir_;
};

} // namespace

TEST(ZEL_Loglevels, NamesLettersAndMasks) {
  EXPECT_EQ(ZEL_Loglevels::StringToLogLevel("DEBUG"), ZEL_Loglevels::DEBUG);
  EXPECT_EQ(ZEL_Loglevels::StringToLogLevel("debug"), ZEL_Loglevels::NOTICE);
  EXPECT_EQ(ZEL_Loglevels::StringToLogLevel(""), ZEL_Loglevels::NOTICE);
  EXPECT_EQ(ZEL_Loglevels::StringToLogLevel("DEBUG "), ZEL_Loglevels::NOTICE);
  EXPECT_EQ(ZEL_Loglevels::EnumToLogLevel('X'), ZEL_Loglevels::DEVELOP);
  EXPECT_EQ(ZEL_Loglevels::EnumToLogLevel('q'), ZEL_Loglevels::NOTICE);
  EXPECT_EQ(ZEL_Loglevels::EnumToLogLevel('Q'), ZEL_Loglevels::QUIET);

  const auto levels = ZEL_Loglevels::GetLogLevels();
  ASSERT_EQ(levels.size(), 9u);
  EXPECT_EQ(levels.front(), std::make_pair('Q', std::string("QUIET")));
  EXPECT_EQ(levels.back(), std::make_pair('X', std::string("DEVELOP")));
  for (const auto& [letter, name] : levels) {
    SCOPED_TRACE(name);
    const ZEL_Loglevels::Level level = ZEL_Loglevels::StringToLogLevel(name);
    EXPECT_EQ(ZEL_Loglevels::ToEnum(level), letter);
    EXPECT_EQ(ZEL_Loglevels::ToString(level), name);
    EXPECT_EQ(ZEL_Loglevels::EnumToLogLevel(letter), level);
  }

  const unsigned long masks[] = {0, 256, 384, 416, 432, 440, 444, 446, 446};
  for (int i = 0; i < 9; ++i)
    EXPECT_EQ(ZEL_Loglevels::PriorityMask(static_cast<ZEL_Loglevels::Level>(i)), masks[i]) << i;
  EXPECT_EQ(ZEL_Loglevels::PriorityMask(static_cast<ZEL_Loglevels::Level>(9)), 0u);
  EXPECT_EQ(ZEL_Loglevels::ToEnum(static_cast<ZEL_Loglevels::Level>(-1)), '?');
  EXPECT_STREQ(ZEL_Loglevels::ToString(static_cast<ZEL_Loglevels::Level>(42)), "UNKNOWN");
}

TEST_F(LoggingTest, LineLayoutExpandsHeaderDirectives) {
  Start(ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::error("file.cpp", 10, kHeader, "disk full");
  const std::regex layout(R"(\(ERROR   \) \[\d\d:\d\d:\d\d\.\d{6}\|logtest\|\d+\|TarnUtilities\|LoggingTest\] disk full\n)");
  ASSERT_EQ(Lines().size(), 1u);
  EXPECT_TRUE(std::regex_match(Lines()[0], layout)) << Lines()[0];
  EXPECT_TRUE(std::regex_match(LogText(), layout)) << LogText();
}

TEST_F(LoggingTest, PrefixesLevelFilterAndListener) {
  Start(ZEL_Loglevels::DEVELOP);
  ZEL_LogMacros::critical("f", 1, "", "m");
  ZEL_LogMacros::error("f", 1, "", "m");
  ZEL_LogMacros::warning("f", 1, "", "m");
  ZEL_LogMacros::notice("f", 1, "", "m");
  ZEL_LogMacros::info("f", 1, "", "m");
  ZEL_LogMacros::debug("f", 1, "", "m");
  ZEL_LogMacros::trace("f", 1, "", "m");
  ZEL_LogMacros::develop("f", 1, "", "m");
  EXPECT_EQ(Lines(), (std::vector<std::string>{"(CRITICAL) m\n", "(ERROR   ) m\n", "(WARNING ) m\n",
                                               "(NOTICE  ) m\n", "(INFO    ) m\n", "(DEBUG   ) m\n",
                                               "(TRACE   ) m\n", "(DEVELOP ) m\n"}));
  ZEL_Logging::Release();
  SetUp();
  Start(ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::info("f", 1, "", "hidden info");
  ZEL_LogMacros::debug("f", 1, "", "hidden debug");
  ZEL_LogMacros::develop("f", 1, "", "shown develop");
  // The message is never a format; the listener hears UTF-16.
  ZEL_LogMacros::notice("f", 1, "", "100% sure: %d %s %n Gr\xC3\xBC\xC3\x9F""e \xE2\x82\xAC");
  ASSERT_EQ(Lines(), (std::vector<std::string>{"(DEVELOP ) shown develop\n",
                                               "(NOTICE  ) 100% sure: %d %s %n Gr\xC3\xBC\xC3\x9F""e \xE2\x82\xAC\n"}));
  ZEL_Logging::RemoveListener();
  ZEL_LogMacros::notice("f", 1, "", "after removal");
  EXPECT_EQ(Lines().size(), 2u);
  EXPECT_THAT(LogText(), HasSubstr("after removal"));
  // A second Init changes nothing.
  ZEL_LogConfig louder;
  louder.level = ZEL_Loglevels::DEBUG;
  ZEL_Logging::Init("other", louder, u".");
  EXPECT_EQ(ZEL_Logging::GetConfig().level, ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::info("f", 1, "", "still filtered");
  EXPECT_THAT(LogText(), testing::Not(HasSubstr("still filtered")));
}

TEST_F(LoggingTest, QuietLevelWritesNothingNotEvenCritical) {
  Start(ZEL_Loglevels::QUIET);
  ZEL_LogMacros::critical("f", 1, kHeader, "nothing");
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code("183807301111"), "nothing either", ""));
  EXPECT_TRUE(Lines().empty());
  EXPECT_EQ(LogText(), "");
}

TEST_F(LoggingTest, LogFileIsAppendedOrReplaced) {
  tarn_test::WriteFile(dir_ / "test.log", "old line\n");
  Start(ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::notice("f", 1, "", "new line");
  EXPECT_EQ(LogText(), "old line\n(NOTICE  ) new line\n");

  ZEL_Logging::Release();
  ZEL_LogConfig fresh;
  fresh.removeExistingLogFile = true;
  Start(ZEL_Loglevels::NOTICE, fresh);
  ZEL_LogMacros::notice("f", 1, "", "only line");
  EXPECT_EQ(LogText(), "(NOTICE  ) only line\n");
}

TEST_F(LoggingTest, ReconfigurationReachesRunningThreads) {
  Start(ZEL_Loglevels::NOTICE);
  std::promise<void> firstWritten, reconfigured;
  std::future<void> go = reconfigured.get_future();
  std::thread worker([&] {
    ZEL_LogMacros::notice("f", 1, "", "first file");
    firstWritten.set_value();
    go.wait();
    ZEL_LogMacros::notice("f", 1, "", "second file");
  });
  firstWritten.get_future().wait();
  ZEL_LogConfig second;
  second.logFile = u"second.log";
  ZEL_Logging::SetConfig(second, Wide(dir_.path()));
  reconfigured.set_value();
  worker.join();
  EXPECT_EQ(LogText(), "(NOTICE  ) first file\n");
  EXPECT_EQ(tarn_test::ReadFile(dir_ / "second.log"), "(NOTICE  ) second file\n");
}

namespace {
ZEL_Failure ChainOfThree() {
  ZEL_Failure root(ZEL_Code(), "root <cause> & more", "");
  ZEL_Failure middle(root, ZEL_Code("095024130912"), "middle", "");
  return ZEL_Failure(middle, ZEL_Code("142737310812"), "top line 1\ntop line 2\ntop line 3",
                     "[%T|%n|%P|TarnUtilities|Thrower] ");
}
} // namespace

TEST_F(LoggingTest, InternalFailureIsOneCriticalTextWithSupportSentence) {
  ZEL_LogConfig config;
  config.logFile = u"test.log";
  Start(ZEL_Loglevels::NOTICE, config);
  ZEL_Logging::Failure(ChainOfThree());
  ASSERT_EQ(Lines().size(), 1u);
  const std::string line = Lines()[0];
  EXPECT_THAT(line, StartsWith("(CRITICAL) ["));
  EXPECT_THAT(line, HasSubstr("|TarnUtilities|Thrower] **** Mendrel Corvane ERROR ****\n"
                              "top line 1\ntop line 2\ntop line 3\n"
                              "Code: 142737310812\n"
                              "Reason:\n"
                              "    middle\n"
                              "    Code: 095024130912\n"
                              "    Reason:\n"
                              "        root <cause> & more\n"
                              "\nError has application internal reasons.\n"
                              "Please contact the support of Mendrel and supply "
                              "the log-file test.log\n\n"));
}

TEST_F(LoggingTest, UserFailureIsAnErrorAndWithoutLogFileTheOutputIsNamed) {
  ZEL_LogConfig config;
  config.level = ZEL_Loglevels::NOTICE;
  ZEL_Logging::Init("logtest", config, Wide(dir_.path()));
  ZEL_Logging::SetListener(&Collect);
  testing::internal::CaptureStdout();
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code(), "bad value in line 3", ""));
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code("183807301111"), "boom", ""));
  const std::string out = testing::internal::GetCapturedStdout();
  ASSERT_EQ(Lines().size(), 2u);
  EXPECT_THAT(Lines()[0], StartsWith("(ERROR   ) ["));
  EXPECT_THAT(Lines()[0], testing::EndsWith("ERROR ****\nbad value in line 3\n\n"));
  EXPECT_THAT(Lines()[1], testing::EndsWith("supply the complete application output\n\n"));
  EXPECT_THAT(Lines()[1], HasSubstr("|TarnUtilities|ZEL_Logging] **** Mendrel"));
  EXPECT_THAT(out, testing::EndsWith(Lines()[1]));
}

TEST_F(LoggingTest, XmlFileReplacesTextUnlessAskedForBoth) {
  ZEL_LogConfig config;
  config.exceptionXmlFile = u"failure.xml";
  Start(ZEL_Loglevels::NOTICE, config);
  ZEL_Logging::Failure(ChainOfThree());
  EXPECT_TRUE(Lines().empty());
  EXPECT_EQ(tarn_test::ReadFile(dir_ / "failure.xml"),
            "<EXCEPTION name=\"ZEL_Failure\">\n"
            "  <MESSAGE>top line 1</MESSAGE>\n"
            "  <MESSAGE>top line 2</MESSAGE>\n"
            "  <MESSAGE>top line 3</MESSAGE>\n"
            "  <CODE>142737310812</CODE>\n"
            "  <REASON>\n"
            "    <EXCEPTION name=\"ZEL_Failure\">\n"
            "      <MESSAGE>middle</MESSAGE>\n"
            "      <CODE>095024130912</CODE>\n"
            "      <REASON>\n"
            "        <EXCEPTION name=\"ZEL_Failure\">\n"
            "          <MESSAGE>root &lt;cause&gt; &amp; more</MESSAGE>\n"
            "        </EXCEPTION>\n"
            "      </REASON>\n"
            "    </EXCEPTION>\n"
            "  </REASON>\n"
            "</EXCEPTION>\n");

  // Each failure replaces the file; with the text switch the log gets it too.
  ZEL_Logging::Release();
  config.logXmlExceptionsAsText = true;
  Start(ZEL_Loglevels::NOTICE, config);
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code(), "second", ""));
  EXPECT_EQ(tarn_test::ReadFile(dir_ / "failure.xml"),
            "<EXCEPTION name=\"ZEL_Failure\">\n  <MESSAGE>second</MESSAGE>\n</EXCEPTION>\n");
  EXPECT_EQ(Lines().size(), 1u);
}

TEST_F(LoggingTest, XmlFileNameIsJoinedToTheWorkingDirectoryUnlessAbsolute) {
  dir_.Write("sub/keep", "");
  const tarn_test::TempDir elsewhere;
  for (const std::string& name : {std::string("sub/failure.xml"), elsewhere / "abs.xml"}) {
    SCOPED_TRACE(name);
    ZEL_Logging::Release();
    ZEL_LogConfig config;
    config.exceptionXmlFile = Wide(name);
    Start(ZEL_Loglevels::NOTICE, config);
    ZEL_Logging::Failure(std::runtime_error("placed"));
    const std::string path = name[0] == '/' ? name : dir_ / name;
    EXPECT_THAT(tarn_test::ReadFile(path), HasSubstr("<MESSAGE>placed</MESSAGE>"));
  }
}

TEST_F(LoggingTest, StandardAndUnknownExceptionsAreInternal) {
  Start(ZEL_Loglevels::NOTICE);
  ZEL_Logging::Failure(std::runtime_error("vector too long"));
  ASSERT_EQ(Lines().size(), 1u);
  EXPECT_THAT(Lines()[0], StartsWith("(CRITICAL)["));
  EXPECT_THAT(Lines()[0], HasSubstr("|TarnUtilities|ZEL_Logging] **** Mendrel Corvane ERROR ****\n"
                                    "vector too long\nError has application internal reasons.\n"));
  // A long text reaches standard output and the listener whole.
  ZEL_Logging::Release();
  ZEL_Logging::Init("logtest", ZEL_LogConfig(), Wide(dir_.path()));
  ZEL_Logging::SetListener(&Collect);
  const std::string what(9000, 'w');
  testing::internal::CaptureStdout();
  ZEL_Logging::Failure(std::length_error(what + "<end>"));
  const std::string out = testing::internal::GetCapturedStdout();
  ASSERT_EQ(Lines().size(), 2u);
  EXPECT_THAT(Lines()[1], StartsWith("(CRITICAL)["));
  EXPECT_THAT(Lines()[1], testing::EndsWith("ERROR ****\n" + what +
                                            "<end>\nError has application internal reasons.\n"
                                            "Please contact the support of Mendrel and supply "
                                            "the complete application output\n\n"));
  EXPECT_EQ(out, Lines()[1]);

  ZEL_Logging::Release();
  ZEL_LogConfig config;
  config.exceptionXmlFile = u"std.xml";
  Start(ZEL_Loglevels::NOTICE, config);
  ZEL_Logging::Failure(std::runtime_error("a<b\nsecond"));
  EXPECT_EQ(tarn_test::ReadFile(dir_ / "std.xml"),
            "<EXCEPTION name=\"std::exception\">\n  <MESSAGE>a&lt;b</MESSAGE>\n"
            "  <MESSAGE>second</MESSAGE>\n</EXCEPTION>\n");
  // An unknown exception is reported with its code.
  ZEL_Logging::Failure();
  EXPECT_EQ(tarn_test::ReadFile(dir_ / "std.xml"),
            "<EXCEPTION name=\"ZEL_Failure\">\n  <MESSAGE>Unknown error</MESSAGE>\n"
            "  <CODE>183807301111</CODE>\n</EXCEPTION>\n");
}

namespace {
// Runs in a fresh process (threadsafe death-test style re-executes the test
// binary), because the "TARN_QA" flag is read once per process.
int CountQaLines(const char* flagValue) {
  if (flagValue)
    setenv("TARN_QA", flagValue, 1);
  else
    unsetenv("TARN_QA");
  ZEL_LogConfig config;
  config.level = ZEL_Loglevels::INFO;
  ZEL_Logging::Init("qa", config, u".");
  ZEL_Logging::SetListener(&Collect);
  ZEL_LogMacros::qa_info("f", 1, "", "qa line");
  ZEL_LogMacros::qa_info("f", 1, "", "qa line");
  return static_cast<int>(Lines().size());
}
} // namespace

TEST(ZEL_LogMacrosQa, QaLinesFollowTheFlagReadOnce) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(std::exit(CountQaLines("yes")), testing::ExitedWithCode(2), "");
  EXPECT_EXIT(std::exit(CountQaLines("0")), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(std::exit(CountQaLines(nullptr)), testing::ExitedWithCode(0), "");
}

namespace {
/// The message part of a written line: what follows the header's "] ".
std::string MessageOf(const std::string& line) { return line.substr(line.find("] ") + 2); }
} // namespace

TEST_F(LoggingTest, LongMessagesFromManyThreadsArriveWholeAndUninterrupted) {
  Start(ZEL_Loglevels::NOTICE);
  // 10,000 characters each, two-byte ones among them, and different per
  // thread and message, so that any cut, loss or mix shows.
  const auto message = [](int thread, int i) {
    std::string text = "thread " + std::to_string(thread) + " message " + std::to_string(i) + ":";
    while (text.size() < 10000)
      text += (text.size() % 97 == 0) ? std::string("\xC3\xA9") : std::string(1, char('a' + thread));
    return text;
  };
  constexpr int kThreads = 4, kMessages = 5;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([t, &message] {
      for (int i = 0; i < kMessages; ++i)
        ZEL_LogMacros::notice("f", 1, kHeader, message(t, i).c_str());
    });
  for (std::thread& t : threads)
    t.join();
  std::vector<std::string> expected;
  for (int t = 0; t < kThreads; ++t)
    for (int i = 0; i < kMessages; ++i)
      expected.push_back(message(t, i) + "\n");
  std::vector<std::string> heard, written;
  for (const std::string& line : Lines()) {
    EXPECT_THAT(line, StartsWith("(NOTICE  ) ["));
    heard.push_back(MessageOf(line));
  }
  std::istringstream file(LogText());
  for (std::string line; std::getline(file, line);)
    written.push_back(MessageOf(line) + "\n");
  EXPECT_THAT(heard, testing::UnorderedElementsAreArray(expected));
  EXPECT_THAT(written, testing::UnorderedElementsAreArray(expected));
  // A long message ends like a short one: its own line break is kept and the
  // line's is added.
  const std::string endsWithBreak = message(9, 0) + "\n";
  ZEL_LogMacros::notice("f", 1, kHeader, endsWithBreak.c_str());
  EXPECT_EQ(MessageOf(Lines().back()), endsWithBreak + "\n");
}

TEST_F(LoggingTest, EchoToStderrCopiesTheLogFile) {
  const std::string longMessage(6000, 'x');
  for (const bool echo : {false, true}) {
    SCOPED_TRACE(echo);
    ZEL_Logging::Release();
    ZEL_LogConfig config;
    config.echoToStderr = echo;
    config.removeExistingLogFile = true;
    Start(ZEL_Loglevels::NOTICE, config);
    testing::internal::CaptureStderr();
    ZEL_LogMacros::notice("f", 1, "", "short");
    ZEL_LogMacros::notice("f", 1, "", longMessage.c_str());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(LogText(), "(NOTICE  ) short\n(NOTICE  ) " + longMessage + "\n");
    EXPECT_EQ(err, echo ? LogText() : "");
  }
}

TEST_F(LoggingTest, OverlongHeaderIsCutButMessageKept) {
  Start(ZEL_Loglevels::NOTICE);
  const std::string header(2000, 'h');
  ZEL_LogMacros::notice("f", 1, header.c_str(), "tail");
  ASSERT_EQ(Lines().size(), 1u);
  EXPECT_THAT(Lines()[0], StartsWith("(NOTICE  ) hhhh"));
  EXPECT_THAT(Lines()[0], testing::EndsWith("htail\n"));
  EXPECT_LT(Lines()[0].size(), 520u);
  // A cut right after a '%' must not turn the message directive into text.
  const std::string percents(600, '%');
  ZEL_LogMacros::notice("f", 1, percents.c_str(), "kept");
  EXPECT_THAT(Lines().back(), testing::EndsWith("kept\n"));
  // A whole "%%" at the end of a header that fits is the header's '%'.
  ZEL_LogMacros::notice("f", 1, "[x]%%", "m");
  EXPECT_EQ(Lines().back(), "(NOTICE  ) [x]%m\n");
}

TEST_F(LoggingTest, UnopenableXmlFileStillGivesTheText) {
  ZEL_LogConfig config;
  config.exceptionXmlFile = u"no/such/dir/failure.xml";
  config.logXmlExceptionsAsText = true;
  Start(ZEL_Loglevels::NOTICE, config);
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code(), "still reported", ""));
  ASSERT_EQ(Lines().size(), 1u);
  EXPECT_THAT(Lines()[0], HasSubstr("still reported"));
}

TEST_F(LoggingTest, DeepReasonChainsAreReportedWhole) {
  Start(ZEL_Loglevels::NOTICE);
  ZEL_Failure chain(ZEL_Code(), "level 0", "");
  for (int i = 1; i < 200; ++i)
    chain = ZEL_Failure(chain, ZEL_Code(), "level " + std::to_string(i), "");
  ZEL_Logging::Failure(chain);
  // Far longer than one ACE record, and still one line.
  ASSERT_EQ(Lines().size(), 1u);
  const std::string line = Lines()[0];
  EXPECT_THAT(line, StartsWith("(ERROR   ) ["));
  for (int i = 0; i < 200; ++i)
    EXPECT_THAT(line, HasSubstr(std::string(4 * (199 - i), ' ') + "level " + std::to_string(i) +
                                "\n")) << i;
  EXPECT_EQ(LogText(), line);
}
