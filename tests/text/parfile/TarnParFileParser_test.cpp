//===- TarnParFileParser_test.cpp - The word reader on real files -----------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/TarnParFileParser.h"
#include "text/parfile/ParLogCapture.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using tarn_test::TempDir;
using Blocks = TarnParFileParser::BlockList;
using Block = TarnParFileParser::Block;
using Dirs = std::vector<std::u16string>;

namespace {

Blocks Read(const std::u16string& file, const std::string& command, const Dirs& dirs = {}) {
  return TarnParFileParser::ParseParameterFile(file, command, dirs);
}

// The message of the ZEL_Failure that reading throws, or "no failure".
std::string FailureOf(const std::u16string& file, const std::string& command,
                      const Dirs& dirs = {}) {
  try {
    Read(file, command, dirs);
  } catch (const ZEL_Failure& failure) {
    EXPECT_EQ(failure.GetHeader(), "[%T|%n|%P|TarnUtilities|TarnParFileParser] ");
    EXPECT_FALSE(failure.GetCode().exists());
    return failure.GetMessage();
  }
  return "no failure";
}

// Every test gets a scratch directory and captures the log lines.
class ParFileParserTest : public ::testing::Test {
protected:
  TempDir dir;
  ParLogCapture log;
};

} // namespace

TEST_F(ParFileParserTest, ReadsEveryBlockOfTheCommand) {
  dir.Write("m.par", "! solver settings\nSOLVER\nMethod = Newton   ! the default\ntolerance=1e-6\n"
                     "END_\nOTHER\nx = 1\nEND_\nsolver extra words are ignored\n"
                     "title = \"Second Run\"   \nlabel = 'Single'\nempty =\n"
                     "spread = a b  c\t d ! joined\nends = at!bang\nhash = a#b$c\nEND_\nSOLVER_2\n"
                     "x = 2\nEND_\n");
  EXPECT_EQ(Read(dir.Wide("m.par"), "Solver"),
            (Blocks{{{"method", "Newton"}, {"tolerance", "1e-6"}},
                    {{"title", "\"Second Run\""}, {"label", "'Single'"}, {"empty", ""},
                     {"spread", "abcd"}, {"ends", "at"}, {"hash", "a#b$c"}}}));
  EXPECT_EQ(Read(dir.Wide("m.par"), "solver_2"), (Blocks{{{"x", "2"}}}));
  EXPECT_THAT(Read(dir.Wide("m.par"), "absent"), IsEmpty());
  // An empty command name matches no line, not even a blank one.
  EXPECT_THAT(Read(dir.Wide("m.par"), ""), IsEmpty());
}

TEST_F(ParFileParserTest, CommentAndEndLines) {
  dir.Write("m.par", "CMD\n\n   \t\n! bang\n# hash\n$ dollar\n** stars\n   ! indented comment\n"
                     "com a Fortran-style comment\nC another one\nc = 5\nCOM= 6\nEND_\n"
                     "cmd\nb = 2\n  end_ trailing words\nCMD\nc = 3\nEND_CMD\n");
  EXPECT_EQ(Read(dir.Wide("m.par"), "cmd"),
            (Blocks{{{"c", "5"}, {"com", "6"}}, {{"b", "2"}}, {{"c", "3"}}}));
}

TEST_F(ParFileParserTest, AddsTheDefaultExtension) {
  dir.Write("model.par", "CMD\na = par\nEND_\n");
  EXPECT_EQ(Read(dir.Wide("model"), "cmd"), (Blocks{{{"a", "par"}}}));
  // A file without extension that exists is read as named.
  dir.Write("model", "CMD\na = bare\nEND_\n");
  EXPECT_EQ(Read(dir.Wide("model"), "cmd"), (Blocks{{{"a", "bare"}}}));
}

TEST_F(ParFileParserTest, MissingOrUnreadableFileThrows) {
  dir.Write("sub.par/x", "");
  EXPECT_EQ(FailureOf(dir.Wide("absent"), "cmd"),
            "Parameter file \"" + dir / "absent.par" + "\" does not exist");
  EXPECT_EQ(FailureOf(dir.Wide("sub.par"), "cmd"),
            "Error opening parameter file \"" + dir / "sub.par" + "\" for reading.");
}

TEST_F(ParFileParserTest, SyntaxErrorsInBlocksThrow) {
  struct Case { const char* line; const char* messageStart; };
  const Case cases[] = {
      {"key value", "'=' expected in line\n    "},
      {"include, other.par", "'=' expected in line\n    "},
      {"key = \"quoted\" tail", "Unexpected symbols found in line\n    "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.line);
    dir.Write("m.par", std::string("CMD\nok = 1\n") + c.line + "\nEND_\n");
    EXPECT_EQ(FailureOf(dir.Wide("m.par"), "cmd"), std::string(c.messageStart) + c.line +
                                                           "\n of the parameter file \"" +
                                                           dir / "m.par" + "\".");
  }
}

TEST_F(ParFileParserTest, LongLinesAreQuotedShortInMessages) {
  const std::string line = "key " + std::string(20000, 'x');
  dir.Write("m.par", "CMD\n" + line + "\nEND_\n");
  EXPECT_EQ(FailureOf(dir.Wide("m.par"), "cmd"),
            "'=' expected in line\n    " + line.substr(0, 512) + "...\n of the parameter file \"" +
                dir / "m.par" + "\".");
}

TEST_F(ParFileParserTest, MissingEndThrows) {
  dir.Write("m.par", "CMD\na = 1\n");
  EXPECT_EQ(FailureOf(dir.Wide("m.par"), "cmd"),
            "End of file reached before END_ command is found in file \"" + dir / "m.par" +
                "\".");
  // Also in an included file: the message names the included file.
  dir.Write("main.par", "include, sub.par\nCMD\nEND_\n");
  dir.Write("sub.par", "CMD\nb = 2");
  EXPECT_EQ(FailureOf(dir.Wide("main.par"), "cmd"),
            "End of file reached before END_ command is found in file \"" + dir / "sub.par" +
                "\".");
}

TEST_F(ParFileParserTest, UnterminatedQuoteOrMissingKeyGiveAWarning) {
  dir.Write("m.par", "CMD\na = \"open\nb = 'x\n= 5\nEND_\n");
  EXPECT_EQ(Read(dir.Wide("m.par"), "cmd"), (Blocks{{{"a", ""}, {"b", ""}, {"", "5"}}}));
  const std::string file = " of the parameter file \"" + dir / "m.par" + "\".";
  EXPECT_THAT(log.Messages("WARNING"),
              ElementsAre("Closing quote missing in line\n    a = \"open\n" + file +
                              " The value is empty.",
                          "Closing quote missing in line\n    b = 'x\n" + file +
                              " The value is empty.",
                          "Key missing before '=' in line\n    = 5\n" + file +
                              " The value is stored under an empty key."));
}

TEST_F(ParFileParserTest, ByteOrderMarkAtTheStartIsSkipped) {
  dir.Write("main.par", "\xEF\xBB\xBF" "CMD\na = 1\nEND_\ninclude, sub.par\n");
  dir.Write("sub.par", "\xEF\xBB\xBF" "CMD\nb = 2\nEND_\n");
  EXPECT_EQ(Read(dir.Wide("main.par"), "cmd"), (Blocks{{{"a", "1"}}, {{"b", "2"}}}));
  dir.Write("inc.par", "\xEF\xBB\xBF" "include, sub.par\n");
  EXPECT_EQ(Read(dir.Wide("inc.par"), "cmd"), (Blocks{{{"b", "2"}}}));
}

TEST_F(ParFileParserTest, IncludesAreReadAtTheirPlace) {
  // Included by absolute name, beside the including file, through the
  // directory list (first match wins), nested, with and without extension.
  dir.Write("main.par", "CMD\nat = main1\nEND_\ninclude, " +
                            dir / "abs.par" +
                            "\nINCLUDE sub/beside\ninclude ,, \"listed.par\"\ninclude 'both'\n"
                            "include, shadow.par\nCMD\nat = main2\nEND_\n");
  // A file beside the including file wins over the directory list.
  dir.Write("shadow.par", "CMD\nat = shadow_beside\nEND_\n");
  dir.Write("inc1/shadow.par", "CMD\nat = shadow_listed\nEND_\n");
  dir.Write("abs.par", "CMD\nat = abs\nEND_\n");
  dir.Write("sub/beside.par", "CMD\nat = beside\nEND_\ninclude, nested.par\n");
  dir.Write("sub/nested.par", "CMD\nat = nested\nEND_\n");
  dir.Write("inc1/listed.par", "CMD\nat = listed1\nEND_\n");
  dir.Write("inc2/listed.par", "CMD\nat = listed2\nEND_\n");
  dir.Write("inc2/both.par", "CMD\nat = both2\nEND_\n");
  const Dirs dirs = {dir.Wide("inc1"), dir.Wide("inc2/")};
  EXPECT_EQ(Read(dir.Wide("main.par"), "cmd", dirs),
            (Blocks{{{"at", "main1"}}, {{"at", "abs"}}, {{"at", "beside"}}, {{"at", "nested"}},
                    {{"at", "listed1"}}, {{"at", "both2"}}, {{"at", "shadow_beside"}},
                    {{"at", "main2"}}}));
}

TEST_F(ParFileParserTest, IncludeProblemsAreWarnings) {
  dir.Write("main.par", "include, missing.par\ninclude, " + dir / "gone.par" +
                            "\ninclude\ninclude, \"unterminated\nincludes, x.par\nCMD\na = 1\nEND_\n");
  EXPECT_EQ(Read(dir.Wide("main.par"), "cmd"), (Blocks{{{"a", "1"}}}));
  EXPECT_THAT(log.Messages("WARNING"),
              ElementsAre("Include file \"missing.par\" not found",
                          "Include file \"" + dir / "gone.par" + "\" not found",
                          "'include' command syntax error (include)",
                          "'include' command syntax error (include, \"unterminated)"));
}

TEST_F(ParFileParserTest, IncludeCyclesThrow) {
  dir.Write("a.par", "include, b.par\n");
  dir.Write("b.par", "include, sub/c\n");
  dir.Write("sub/c.par", "include, ../b.par\n");
  EXPECT_EQ(FailureOf(dir.Wide("a.par"), "cmd"),
            "Parameter file \"" + dir / "b.par" + "\" includes itself: \"" + dir / "b.par" +
                "\" -> \"" + dir / "sub/c.par" + "\" -> \"" + dir / "sub/../b.par" + "\"");
}

TEST_F(ParFileParserTest, IncludeDepthIsBounded) {
  const int files = TarnParFileParser::kMaxIncludeDepth + 2;
  for (int i = 0; i < files; ++i)
    dir.Write("f" + std::to_string(i) + ".par", "include, f" + std::to_string(i + 1) + ".par\n");
  const std::string deepest =
      dir / "f" + std::to_string(TarnParFileParser::kMaxIncludeDepth + 1) + ".par";
  EXPECT_EQ(FailureOf(dir.Wide("f0.par"), "cmd"),
            "Parameter file \"" + deepest + "\" is included more than 64 levels deep.");
  // Exactly the maximum is fine.
  dir.Write("f" + std::to_string(TarnParFileParser::kMaxIncludeDepth) + ".par", "CMD\nEND_\n");
  EXPECT_EQ(Read(dir.Wide("f0.par"), "cmd").size(), 1u);
}

TEST_F(ParFileParserTest, IncludedFilesAreCounted) {
  // Every level includes the next one twice: 2 + 4 + ... + 2^14 files.
  constexpr int kLevels = 14;
  for (int i = 0; i < kLevels; ++i) {
    const std::string next = "include, f" + std::to_string(i + 1) + ".par\n";
    dir.Write("f" + std::to_string(i) + ".par", next + next);
  }
  dir.Write("f" + std::to_string(kLevels) + ".par", "CMD\nEND_\n");
  const std::string message = FailureOf(dir.Wide("f0.par"), "cmd");
  EXPECT_THAT(message, ::testing::EndsWith("\" is not read: more than 10000 include files are "
                                           "read for \"" +
                                           dir / "f0.par" + "\"."));
  // Reading the same file more than once without a cycle is fine.
  EXPECT_EQ(Read(dir.Wide("f" + std::to_string(kLevels - 3) + ".par"), "cmd").size(), 8u);
}

TEST_F(ParFileParserTest, LogsEveryFileAtDebugLevel) {
  dir.Write("main.par", "include, sub.par\n");
  dir.Write("sub.par", "include, leaf.par\n");
  dir.Write("leaf.par", "");
  Read(dir.Wide("main"), "cmd");
  const std::string main = dir / "main.par";
  const std::string sub = dir / "sub.par";
  const std::string leaf = dir / "leaf.par";
  EXPECT_THAT(log.Messages("DEBUG"),
              ElementsAre("Parsing parameter file \"" + main + "\".",
                          "Parsing parameter file \"" + sub + "\", include level 1.",
                          "Parsing parameter file \"" + leaf + "\", include level 2.",
                          "Included parameter file \"" + leaf + "\" (include level 2) loaded.",
                          "Included parameter file \"" + sub + "\" (include level 1) loaded.",
                          "Parameter file \"" + main + "\" loaded."));
  for (const CapturedLine& line : log.lines)
    EXPECT_EQ(line.header, "TarnUtilities|TarnParFileParser");
}

TEST_F(ParFileParserTest, LineEndsNulBytesAndLongLines) {
  const std::string longValue(50000, 'z');
  struct Case { const char* name; std::string text; Blocks expected; };
  static const char kNul[] = "CMD\na = 1\0 ignored\n\0\nEND_\n";
  const Case cases[] = {
      {"CR LF", "CMD\r\na = 1\r\nEND_\r\n", {{{"a", "1"}}}},
      {"CR only", "CMD\ra = 1\rEND_\r", {{{"a", "1"}}}},
      {"empty file", "", {}},
      {"NUL bytes", std::string(kNul, sizeof kNul - 1), {{{"a", "1"}}}},
      {"line longer than 10000 bytes",
       "CMD\nlong = " + longValue + "\nEND_\n",
       {{{"long", longValue}}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    dir.Write("m.par", c.text);
    EXPECT_EQ(Read(dir.Wide("m.par"), "cmd"), c.expected);
  }
}

TEST_F(ParFileParserTest, BinaryGarbageEitherReadsOrFailsCleanly) {
  std::mt19937 random(4711);
  for (int round = 0; round < 30; ++round) {
    std::string bytes(2048, '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(random() % 4 == 0 ? "\ncmd=!\"' "[random() % 9] : random());
    if (round % 3 == 0)
      bytes.insert(random() % bytes.size(), "\ncmd\n");
    dir.Write("m.par", bytes);
    try {
      Read(dir.Wide("m.par"), "cmd");
    } catch (const ZEL_Failure&) {
      // A block of garbage is a syntax error; anything but a ZEL_Failure
      // escaping would fail the test.
    }
  }
}
