//===- ZEL_Logging_test.cpp - Logger, destinations and failure reports ------===//
//
// Lines are heard through a collecting listener and read back from the log
// file; failure reports (text and XML) are compared whole.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Logging.h"
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

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using tarn_test::ReadFile;
using tarn_test::Wide;
using Lines = std::vector<std::string>;

namespace {

std::mutex g_linesMutex;
Lines g_lines;

void Collect(const char16_t* line) {
  std::lock_guard<std::mutex> lock(g_linesMutex);
  g_lines.push_back(TarnStringUtil::wide_to_utf8(line));
}

Lines Heard() {
  std::lock_guard<std::mutex> lock(g_linesMutex);
  return g_lines;
}

const char* const kHeader = "[%T|%n|%P|TarnUtilities|LoggingTest] ";
const std::string kSupport = "\nError has application internal reasons.\n"
                             "Please contact the support of Mendrel and supply ";

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
  // Restarts the logger at `level` with the collecting listener, writing into
  // "test.log" in the scratch directory unless told "" (standard output).
  void Start(ZEL_Loglevels::Level level, ZEL_LogConfig config = ZEL_LogConfig(),
             const char16_t* logFile = u"test.log") {
    SetUp();
    config.level = level;
    config.logFile = logFile;
    ZEL_Logging::Init("logtest", config, Wide(dir_.path()));
    ZEL_Logging::SetListener(&Collect);
  }
  std::string LogText() const { return ReadFile(dir_ / "test.log"); }

  tarn_test::TempDir dir_;
};

ZEL_Failure ChainOfThree() {
  ZEL_Failure root(ZEL_Code(), "root <cause> & more", "");
  ZEL_Failure middle(root, ZEL_Code("095024130912"), "middle", "");
  return ZEL_Failure(middle, ZEL_Code("142737310812"), "top line 1\ntop line 2\ntop line 3",
                     "[%T|%n|%P|TarnUtilities|Thrower] ");
}

// The message part of a written line: what follows the header's "] ".
std::string MessageOf(const std::string& line) { return line.substr(line.find("] ") + 2); }

} // namespace

TEST(ZEL_Loglevels, NamesLettersAndMasks) {
  using L = ZEL_Loglevels;
  EXPECT_EQ(L::StringToLogLevel("DEBUG"), L::DEBUG);
  for (const char* other : {"debug", "", "DEBUG "})
    EXPECT_EQ(L::StringToLogLevel(other), L::NOTICE) << other;
  EXPECT_EQ(L::EnumToLogLevel('X'), L::DEVELOP);
  EXPECT_EQ(L::EnumToLogLevel('q'), L::NOTICE);
  EXPECT_EQ(L::EnumToLogLevel('Q'), L::QUIET);
  const auto levels = L::GetLogLevels();
  ASSERT_EQ(levels.size(), 9u);
  EXPECT_EQ(levels.front(), std::make_pair('Q', std::string("QUIET")));
  EXPECT_EQ(levels.back(), std::make_pair('X', std::string("DEVELOP")));
  for (const auto& [letter, name] : levels) {
    SCOPED_TRACE(name);
    const L::Level level = L::StringToLogLevel(name);
    EXPECT_EQ(L::ToEnum(level), letter);
    EXPECT_EQ(L::ToString(level), name);
    EXPECT_EQ(L::EnumToLogLevel(letter), level);
  }
  const unsigned long masks[] = {0, 256, 384, 416, 432, 440, 444, 446, 446, 0};
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(L::PriorityMask(static_cast<L::Level>(i)), masks[i]) << i;
  EXPECT_EQ(L::ToEnum(static_cast<L::Level>(-1)), '?');
  EXPECT_STREQ(L::ToString(static_cast<L::Level>(42)), "UNKNOWN");
}

TEST_F(LoggingTest, LayoutPrefixesLevelFilterAndListener) {
  Start(ZEL_Loglevels::QUIET); // nothing at all, not even a critical failure
  ZEL_LogMacros::critical("f", 1, kHeader, "nothing");
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code("183807301111"), "nothing either", ""));
  EXPECT_TRUE(Heard().empty());
  EXPECT_EQ(LogText(), "");
  Start(ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::error("file.cpp", 10, kHeader, "disk full");
  const std::regex layout(R"(\(ERROR   \) \[\d\d:\d\d:\d\d\.\d{6}\|logtest\|\d+\|TarnUtilities\|LoggingTest\] disk full\n)");
  ASSERT_EQ(Heard().size(), 1u);
  EXPECT_TRUE(std::regex_match(Heard()[0], layout)) << Heard()[0];
  EXPECT_TRUE(std::regex_match(LogText(), layout)) << LogText();

  using Macro = void (*)(const char*, int, const char*, const char*);
  const Macro macros[] = {ZEL_LogMacros::critical, ZEL_LogMacros::error, ZEL_LogMacros::warning,
                          ZEL_LogMacros::notice,   ZEL_LogMacros::info,  ZEL_LogMacros::debug,
                          ZEL_LogMacros::trace,    ZEL_LogMacros::develop};
  const Lines all = {"(CRITICAL) m\n", "(ERROR   ) m\n", "(WARNING ) m\n", "(NOTICE  ) m\n",
                     "(INFO    ) m\n", "(DEBUG   ) m\n", "(TRACE   ) m\n", "(DEVELOP ) m\n"};
  Start(ZEL_Loglevels::DEVELOP);
  for (Macro macro : macros)
    macro("f", 1, "", "m");
  EXPECT_EQ(Heard(), all);
  // At NOTICE, info, debug and trace are filtered; develop is not.
  Start(ZEL_Loglevels::NOTICE);
  for (Macro macro : macros)
    macro("f", 1, "", "m");
  EXPECT_EQ(Heard(), (Lines{all[0], all[1], all[2], all[3], all[7]}));
  // The message is never a format; the listener hears UTF-16.
  const char* const odd = "100% sure: %d %s %n Gr\xC3\xBC\xC3\x9F""e \xE2\x82\xAC";
  ZEL_LogMacros::notice("f", 1, "", odd);
  EXPECT_EQ(Heard().back(), "(NOTICE  ) " + std::string(odd) + "\n");
  ZEL_Logging::RemoveListener();
  ZEL_LogMacros::notice("f", 1, "", "after removal");
  EXPECT_EQ(Heard().size(), 6u);
  EXPECT_THAT(LogText(), EndsWith(") after removal\n"));
  // A second Init changes nothing.
  ZEL_LogConfig louder;
  louder.level = ZEL_Loglevels::DEBUG;
  ZEL_Logging::Init("other", louder, u".");
  EXPECT_EQ(ZEL_Logging::GetConfig().level, ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::info("f", 1, "", "still filtered");
  EXPECT_THAT(LogText(), EndsWith(") after removal\n"));
}

TEST_F(LoggingTest, LogFileIsAppendedOrReplacedAndEchoed) {
  tarn_test::WriteFile(dir_ / "test.log", "old line\n");
  Start(ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::notice("f", 1, "", "new line");
  EXPECT_EQ(LogText(), "old line\n(NOTICE  ) new line\n");
  const std::string longMessage(6000, 'x');
  for (const bool echo : {false, true}) {
    SCOPED_TRACE(echo);
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

TEST_F(LoggingTest, ReconfigurationReachesRunningThreads) {
  Start(ZEL_Loglevels::NOTICE);
  std::promise<void> firstWritten, reconfigured;
  std::thread worker([&firstWritten, go = reconfigured.get_future()] {
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
  EXPECT_EQ(ReadFile(dir_ / "second.log"), "(NOTICE  ) second file\n");
}

TEST_F(LoggingTest, FailureTexts) {
  // An internal failure (it has a code) is critical, under the thrower's
  // header, and names the log file.
  Start(ZEL_Loglevels::NOTICE);
  ZEL_Logging::Failure(ChainOfThree());
  ASSERT_EQ(Heard().size(), 1u);
  EXPECT_THAT(Heard()[0], StartsWith("(CRITICAL) ["));
  EXPECT_THAT(Heard()[0], EndsWith("|TarnUtilities|Thrower] **** Mendrel Corvane ERROR ****\n"
                                   "top line 1\ntop line 2\ntop line 3\nCode: 142737310812\n"
                                   "Reason:\n    middle\n    Code: 095024130912\n    Reason:\n"
                                   "        root <cause> & more\n" +
                                   kSupport + "the log-file test.log\n\n"));
  EXPECT_EQ(LogText(), Heard()[0]);
  // Without a log file: a user failure is an error, the output is named, the
  // logger's own header stands in for a missing one, and the text goes to
  // standard output whole however long.
  Start(ZEL_Loglevels::NOTICE, ZEL_LogConfig(), u"");
  const std::string what(9000, 'w');
  testing::internal::CaptureStdout();
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code(), "bad value in line 3", ""));
  ZEL_Logging::Failure(ZEL_Failure(ZEL_Code("183807301111"), "boom", ""));
  ZEL_Logging::Failure(std::length_error(what + "<end>"));
  const std::string out = testing::internal::GetCapturedStdout();
  const std::string own = "|TarnUtilities|ZEL_Logging] **** Mendrel Corvane ERROR ****\n";
  const std::string output = "the complete application output\n\n";
  const Lines heard = Heard();
  ASSERT_EQ(heard.size(), 3u);
  EXPECT_THAT(heard[0], StartsWith("(ERROR   ) ["));
  EXPECT_THAT(heard[0], EndsWith(own + "bad value in line 3\n\n"));
  EXPECT_THAT(heard[1], StartsWith("(CRITICAL) ["));
  EXPECT_THAT(heard[1], EndsWith(own + "boom\nCode: 183807301111\n" + kSupport + output));
  // A standard exception has no blank after its level.
  EXPECT_THAT(heard[2], StartsWith("(CRITICAL)["));
  EXPECT_THAT(heard[2], EndsWith(own + what + "<end>" + kSupport + output));
  EXPECT_EQ(out, heard[0] + heard[1] + heard[2]);
}

TEST_F(LoggingTest, XmlFileReplacesTextUnlessAskedForBoth) {
  ZEL_LogConfig config;
  config.exceptionXmlFile = u"failure.xml";
  Start(ZEL_Loglevels::NOTICE, config);
  ZEL_Logging::Failure(ChainOfThree());
  EXPECT_TRUE(Heard().empty());
  EXPECT_EQ(ReadFile(dir_ / "failure.xml"),
            "<EXCEPTION name=\"ZEL_Failure\">\n"
            "  <MESSAGE>top line 1</MESSAGE>\n  <MESSAGE>top line 2</MESSAGE>\n"
            "  <MESSAGE>top line 3</MESSAGE>\n  <CODE>142737310812</CODE>\n  <REASON>\n"
            "    <EXCEPTION name=\"ZEL_Failure\">\n      <MESSAGE>middle</MESSAGE>\n"
            "      <CODE>095024130912</CODE>\n      <REASON>\n"
            "        <EXCEPTION name=\"ZEL_Failure\">\n"
            "          <MESSAGE>root &lt;cause&gt; &amp; more</MESSAGE>\n"
            "        </EXCEPTION>\n      </REASON>\n    </EXCEPTION>\n  </REASON>\n"
            "</EXCEPTION>\n");
  ZEL_Logging::Failure(std::runtime_error("a<b\nsecond"));
  EXPECT_EQ(ReadFile(dir_ / "failure.xml"),
            "<EXCEPTION name=\"std::exception\">\n  <MESSAGE>a&lt;b</MESSAGE>\n"
            "  <MESSAGE>second</MESSAGE>\n</EXCEPTION>\n");
  ZEL_Logging::Failure(); // an unknown exception is reported with its code
  EXPECT_EQ(ReadFile(dir_ / "failure.xml"),
            "<EXCEPTION name=\"ZEL_Failure\">\n  <MESSAGE>Unknown error</MESSAGE>\n"
            "  <CODE>183807301111</CODE>\n</EXCEPTION>\n");
  EXPECT_TRUE(Heard().empty());
  // With the text switch the log gets both kinds too, also when the file
  // cannot be opened; a relative name lies under the working directory.
  const tarn_test::TempDir elsewhere;
  dir_.Write("sub/keep", "");
  for (const std::string& name : {std::string("sub/f.xml"), elsewhere / "abs.xml",
                                  std::string("no/such/dir/f.xml")}) {
    SCOPED_TRACE(name);
    config.exceptionXmlFile = Wide(name);
    config.logXmlExceptionsAsText = true;
    Start(ZEL_Loglevels::NOTICE, config);
    ZEL_Logging::Failure(std::runtime_error("placed"));
    ZEL_Logging::Failure(ZEL_Failure(ZEL_Code(), "user", ""));
    EXPECT_EQ(Heard().size(), 2u);
    EXPECT_EQ(ReadFile(name[0] == '/' ? name : dir_ / name),
              name[0] == 'n' ? ""
                             : "<EXCEPTION name=\"ZEL_Failure\">\n  <MESSAGE>user</MESSAGE>\n"
                               "</EXCEPTION>\n");
  }
}

TEST(ZEL_LogMacrosQa, QaLinesFollowTheFlagReadOnce) {
  // In a fresh process each (threadsafe death-test style re-executes the
  // test binary), because the "TARN_QA" flag is read once per process.
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (const char* flag : {"yes", "0", static_cast<const char*>(nullptr)}) {
    const auto countQaLines = [flag] {
      flag ? setenv("TARN_QA", flag, 1) : unsetenv("TARN_QA");
      ZEL_LogConfig config;
      config.level = ZEL_Loglevels::INFO;
      ZEL_Logging::Init("qa", config, u".");
      ZEL_Logging::SetListener(&Collect);
      ZEL_LogMacros::qa_info("f", 1, "", "qa line");
      ZEL_LogMacros::qa_info("f", 1, "", "qa line");
      return static_cast<int>(Heard().size());
    };
    EXPECT_EXIT(std::exit(countQaLines()), testing::ExitedWithCode(flag && *flag == 'y' ? 2 : 0), "");
  }
}

TEST_F(LoggingTest, LongMessagesFromManyThreadsArriveWholeAndUninterrupted) {
  Start(ZEL_Loglevels::NOTICE);
  // 10,000 characters each, two-byte ones among them, and different per
  // thread and message, so that any cut, loss or mix shows.
  const auto message = [](int t, int i) {
    std::string text = "thread " + std::to_string(t) + " message " + std::to_string(i) + ":";
    while (text.size() < 10000)
      text += text.size() % 97 ? std::string(1, char('a' + t)) : "\xC3\xA9";
    return text;
  };
  Lines expected, heard, written;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &message] {
      for (int i = 0; i < 5; ++i)
        ZEL_LogMacros::notice("f", 1, kHeader, message(t, i).c_str());
    });
    for (int i = 0; i < 5; ++i)
      expected.push_back(message(t, i) + "\n");
  }
  for (std::thread& t : threads)
    t.join();
  for (const std::string& line : Heard())
    heard.push_back(line.substr(0, 12) == "(NOTICE  ) [" ? MessageOf(line) : line);
  std::istringstream file(LogText());
  for (std::string line; std::getline(file, line);)
    written.push_back(MessageOf(line) + "\n");
  EXPECT_THAT(heard, testing::UnorderedElementsAreArray(expected));
  EXPECT_THAT(written, testing::UnorderedElementsAreArray(expected));
  // A long message keeps its own line break, and the line's is added.
  ZEL_LogMacros::notice("f", 1, kHeader, (message(9, 0) + "\n").c_str());
  EXPECT_EQ(MessageOf(Heard().back()), message(9, 0) + "\n\n");
}

TEST_F(LoggingTest, OverlongHeaderIsCutButMessageKept) {
  Start(ZEL_Loglevels::NOTICE);
  ZEL_LogMacros::notice("f", 1, std::string(2000, 'h').c_str(), "tail");
  ASSERT_EQ(Heard().size(), 1u);
  EXPECT_THAT(Heard()[0], StartsWith("(NOTICE  ) hhhh"));
  EXPECT_THAT(Heard()[0], EndsWith("htail\n"));
  EXPECT_LT(Heard()[0].size(), 520u);
  // A cut right after a '%' must not turn the message directive into text.
  ZEL_LogMacros::notice("f", 1, std::string(600, '%').c_str(), "kept");
  EXPECT_THAT(Heard().back(), EndsWith("kept\n"));
  // A whole "%%" at the end of a header that fits is the header's '%'.
  ZEL_LogMacros::notice("f", 1, "[x]%%", "m");
  EXPECT_EQ(Heard().back(), "(NOTICE  ) [x]%m\n");
}

TEST_F(LoggingTest, DeepReasonChainsAreReportedWhole) {
  Start(ZEL_Loglevels::NOTICE);
  ZEL_Failure chain(ZEL_Code(), "level 0", "");
  for (int i = 1; i < 200; ++i)
    chain = ZEL_Failure(chain, ZEL_Code(), "level " + std::to_string(i), "");
  std::string expected;
  for (int k = 0; k < 200; ++k) {
    const std::string indent(4 * k, ' ');
    expected += indent + "level " + std::to_string(199 - k) + "\n" + (k < 199 ? indent + "Reason:\n" : "");
  }
  ZEL_Logging::Failure(chain);
  // Far longer than one ACE record, and still one line.
  ASSERT_EQ(Heard().size(), 1u);
  EXPECT_THAT(Heard()[0], StartsWith("(ERROR   ) ["));
  EXPECT_THAT(Heard()[0], EndsWith("ERROR ****\n" + expected + "\n"));
  EXPECT_EQ(LogText(), Heard()[0]);
}
