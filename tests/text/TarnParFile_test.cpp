//===- TarnParFile_test.cpp - The command model on real files ---------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/TarnParFile.h"
#include "text/ParLogCapture.h"
#include "text/ParTempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Strings = std::vector<std::string>;

namespace {

// A readable picture of a parsed file: one entry per command and one per
// sub-command, so that whole files can be compared at once.
Strings Outline(const TarnParFile& file) {
  Strings outline;
  for (const TarnParCommand& command : file) {
    outline.push_back("command " + command.getName() + " id " + command.getIdName());
    for (const TarnParSubCommand& sub : command.getSubCommands()) {
      std::string entry = "  " + std::to_string(sub.getLineType()) + " " + sub.getName() + " [";
      for (const std::string& value : sub.getValues())
        entry += value + ";";
      outline.push_back(entry + "]");
    }
  }
  return outline;
}

TarnParFile ParseText(const ParTempDir& dir, const std::string& text) {
  dir.Write("m.par", text);
  TarnParFile file(dir.WidePath("m.par"));
  file.Parse();
  return file;
}

const char* const kModel = "! model\n"
                           "ignored = 1\n"
                           "1 2 3\n"
                           "save, before\n"
                           "END_\n"
                           "WING\n"
                           "ID_NAME = Left\n"
                           "span = 12.5, 3\n"
                           "Chord = 2\n"
                           "1.0 2.0\n"
                           "f(x)\n"
                           "exit\n"
                           "END_WING\n"
                           "between = 7\n"
                           "wing\n"
                           "id_name = right\n"
                           "SPAN = 11\n"
                           "end_\n"
                           "TAIL\n"
                           "area = 4\n"
                           "END_\n";

} // namespace

TEST(TarnParFile, GroupsCommandsAndIgnoresLinesOutsideThem) {
  ParTempDir dir;
  ParLogCapture quiet;
  const TarnParFile file = ParseText(dir, kModel);
  EXPECT_THAT(Outline(file), ElementsAre("command WING id Left",         //
                                         "  5 ID_NAME [ID_NAME;Left;]",  //
                                         "  4 span [span;12.5;3;]",      //
                                         "  4 Chord [Chord;2;]",         //
                                         "  6 1.0 2.0 []",               //
                                         "  9 f(x) []",                  //
                                         "  1 exit [exit;]",             //
                                         "command wing id right",        //
                                         "  5 id_name [id_name;right;]", //
                                         "  4 SPAN [SPAN;11;]",          //
                                         "command TAIL id ",             //
                                         "  4 area [area;4;]"));
  EXPECT_EQ(file.size(), 3u);
  EXPECT_EQ(file.getFileName(), dir.WidePath("m.par"));
}

TEST(TarnParFile, FindsCommandsByNameAndIdentifier) {
  ParTempDir dir;
  ParLogCapture quiet;
  const TarnParFile file = ParseText(dir, kModel);

  const std::vector<TarnParCommand> wings = file.getParCommands("Wing");
  ASSERT_EQ(wings.size(), 2u);
  EXPECT_EQ(wings[0].getIdName(), "Left");
  EXPECT_EQ(wings[1].getIdName(), "right");
  EXPECT_THAT(file.getParCommands("fuselage"), IsEmpty());

  EXPECT_EQ(file.getParCommandIdName("RIGHT").getName(), "wing");
  EXPECT_EQ(file.getParCommandIdName("left").getFirstSubCommandFirstValue("SPAN"), "12.5");
  ASSERT_NE(file.findParCommandIdName("Left"), nullptr);
  EXPECT_EQ(file.findParCommandIdName("Left")->getName(), "WING");
  EXPECT_EQ(file.findParCommandIdName("nose"), nullptr);
  // A command without an identifier is not found by the empty name.
  EXPECT_EQ(file.findParCommandIdName(""), nullptr);
}

TEST(TarnParFile, MissingIdentifierThrows) {
  ParTempDir dir;
  ParLogCapture quiet;
  const TarnParFile file = ParseText(dir, kModel);
  for (const std::string id : {"nose", ""}) {
    SCOPED_TRACE("id " + id);
    try {
      file.getParCommandIdName(id);
      FAIL() << "no failure";
    } catch (const ZEL_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(), "Could not find command with ID_NAME: " + id);
      EXPECT_EQ(failure.GetStatusCode(), ERR_USER);
      EXPECT_EQ(failure.GetHeader(), "[%T|%n|%P|TarnUtilities|TarnParFile] ");
    }
  }
}

TEST(TarnParFile, SubCommandValues) {
  ParTempDir dir;
  ParLogCapture quiet;
  const TarnParFile file = ParseText(dir, "CMD\n"
                                          "single\n"
                                          "key = a, b = c , d\n"
                                          "only =\n"
                                          "7 8 9\n"
                                          "END_\n");
  const TarnParCommand& command = *file.begin();
  const std::vector<TarnParSubCommand>& subs = command.getSubCommands();
  ASSERT_EQ(subs.size(), 4u);
  struct Case {
    std::size_t index;
    const char* valueLine;
  };
  for (const Case& c :
       {Case{0, "single"}, Case{1, "a, b = c , d"}, Case{2, ""}, Case{3, "7 8 9"}}) {
    SCOPED_TRACE(subs[c.index].getLine());
    EXPECT_EQ(subs[c.index].getValueLine(), c.valueLine);
  }
  EXPECT_EQ(command.getFirstSubCommandFirstValue("KEY"), "c");
  // "only =" has the single value "only =", so there is no first value.
  EXPECT_EQ(command.getFirstSubCommandFirstValue("only ="), "");
  EXPECT_EQ(command.getFirstSubCommandFirstValue("missing"), "");
  EXPECT_EQ(command.getSubCommands("Key").size(), 1u);
  EXPECT_THAT(command.getSubCommands("nothing"), IsEmpty());
}

TEST(TarnParFile, ListSwallowsTheRestOfItsBlock) {
  ParTempDir dir;
  ParLogCapture quiet;
  const TarnParFile file = ParseText(dir, "OUTPUT\n"
                                          "ID_NAME = out\n"
                                          "format = vtk\n"
                                          "LIST_BEGIN\n"
                                          "density\n"
                                          "! a comment inside the list\n"
                                          "stress = von_mises, 2\n"
                                          "OTHER_COMMAND\n"
                                          "ID_NAME = not_the_id\n"
                                          "  1 2 3  \n"
                                          "END_\n"
                                          "EMPTY_LIST\n"
                                          "list_begin\n"
                                          "END_\n");
  EXPECT_THAT(Outline(file),
              ElementsAre("command OUTPUT id out", "  5 ID_NAME [ID_NAME;out;]",
                          "  4 format [format;vtk;]",
                          "  7 LIST_BEGIN [density;stress = von_mises, 2;OTHER_COMMAND;"
                          "ID_NAME = not_the_id;1 2 3;]",
                          "command EMPTY_LIST id ", "  7 list_begin []"));
}

TEST(TarnParFile, SkipsCommentAndUndefinedLinesInsideBlocks) {
  ParTempDir dir;
  ParLogCapture log;
  const TarnParFile file = ParseText(dir, "CMD\n"
                                          "! comment\n"
                                          "** stars\n"
                                          "COMMENT text\n"
                                          "--- ...\n"
                                          "a = 1\n"
                                          "END_\n");
  EXPECT_THAT(Outline(file), ElementsAre("command CMD id ", "  4 a [a;1;]"));
  EXPECT_THAT(log.Messages("WARNING"),
              ElementsAre("Line # 5 has an undefined contents. Ignoring."));
}

TEST(TarnParFile, CommandWithoutEndIsDroppedWithAWarning) {
  ParTempDir dir;
  ParLogCapture log;
  const TarnParFile file = ParseText(dir, "FIRST\na = 1\nEND_\n\nSECOND\nb = 2\n");
  EXPECT_THAT(Outline(file), ElementsAre("command FIRST id ", "  4 a [a;1;]"));
  EXPECT_THAT(log.Messages("WARNING"),
              ElementsAre("Command SECOND in line 5 of the file '" + dir.Path("m.par") +
                          "' has no END_ line. Ignoring it."));
}

TEST(TarnParFile, UnreadableFileThrows) {
  ParTempDir dir;
  dir.Write("folder.par/inside", "");
  struct Case {
    const char* name;
    const char* systemText;
  };
  for (const Case& c :
       {Case{"absent.par", "No such file or directory"}, Case{"folder.par", "Is a directory"}}) {
    SCOPED_TRACE(c.name);
    TarnParFile file(dir.WidePath(c.name));
    try {
      file.Parse();
      FAIL() << "no failure";
    } catch (const ZEL_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(),
                "The file '" + dir.Path(c.name) +
                    "' cannot be opened.\nSystem error message: " + c.systemText);
      EXPECT_FALSE(failure.GetCode().exists());
      EXPECT_EQ(failure.GetHeader(), "[%T|%n|%P|TarnUtilities|TarnParFile] ");
    }
  }
}

TEST(TarnParFile, LogsParsingAndDumpsEveryLevel) {
  ParTempDir dir;
  ParLogCapture log;
  const TarnParFile file = ParseText(dir, "CMD\nID_NAME = one\nk = v\nEND_\n");
  EXPECT_THAT(log.Messages("DEBUG"), ::testing::Contains("Parsing " + dir.Path("m.par")));
  log.lines.clear();
  file.dumpTrace();
  std::vector<std::string> dump;
  for (const CapturedLine& line : log.lines)
    dump.push_back(line.level + " " + line.header + " " + line.message);
  EXPECT_THAT(dump, ElementsAre("TRACE TarnUtilities|TarnParFile Dumping file " + dir.Path("m.par"),
                                "TRACE TarnUtilities|TarnParCommand Dumping: CMD IdName: one",
                                "TRACE TarnUtilities|ParSubCommand Dumping: ID_NAME = one",
                                "TRACE TarnUtilities|ParSubCommand Dumping: k = v"));
}

TEST(TarnParFile, ParsingAgainReplacesTheCommands) {
  ParTempDir dir;
  ParLogCapture quiet;
  TarnParFile file = ParseText(dir, "CMD\nEND_\n");
  dir.Write("m.par", "A\nEND_\nB\nEND_\n");
  file.Parse();
  EXPECT_THAT(Outline(file), ElementsAre("command A id ", "command B id "));
}

// The same text with every form of line end gives the same commands.
TEST(TarnParFile, AcceptsEveryFormOfLineEnd) {
  ParTempDir dir;
  ParLogCapture quiet;
  const std::string lines[] = {"X", "ID_NAME = a", "k = 1, 2", "LIST_BEGIN", "p q", "END_"};
  std::string unix;
  for (const std::string& line : lines)
    unix += line + "\n";
  const Strings expected = Outline(ParseText(dir, unix));
  ASSERT_EQ(expected.size(), 4u);
  for (const std::string end : {"\r\n", "\r", "\n\r"}) {
    for (const bool finalEnd : {true, false}) {
      std::string text;
      for (const std::string& line : lines)
        text += line + end;
      if (!finalEnd)
        text.resize(text.size() - end.size());
      SCOPED_TRACE(::testing::PrintToString(text));
      EXPECT_EQ(Outline(ParseText(dir, text)), expected);
    }
  }
}

TEST(TarnParFile, EmptyAndBlankFilesHaveNoCommands) {
  ParTempDir dir;
  ParLogCapture quiet;
  for (const std::string text : {"", "\n", "\r\n\r\n", "   \n\t\n", "! only a comment"}) {
    SCOPED_TRACE(::testing::PrintToString(text));
    EXPECT_TRUE(ParseText(dir, text).empty());
  }
}

TEST(TarnParFile, NulByteEndsTheTextOfItsLine) {
  ParTempDir dir;
  ParLogCapture quiet;
  static const char kText[] = "CMD\nk = 1\0 = 2, 3\n\0\nEND_\n";
  const TarnParFile file = ParseText(dir, std::string(kText, sizeof kText - 1));
  EXPECT_THAT(Outline(file), ElementsAre("command CMD id ", "  4 k [k;1;]"));
}

TEST(TarnParFile, LongLinesAreReadWhole) {
  ParTempDir dir;
  ParLogCapture quiet;
  const std::string longValue(300000, 'v');
  const TarnParFile file = ParseText(dir, "CMD\nk = " + longValue + "\nEND_\n");
  EXPECT_EQ(file.begin()->getFirstSubCommandFirstValue("k"), longValue);
}

TEST(TarnParFile, BinaryGarbageDoesNotBreakParsing) {
  ParTempDir dir;
  ParLogCapture quiet;
  std::mt19937 random(77);
  for (int round = 0; round < 20; ++round) {
    std::string bytes(4096, '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(random());
    // Some structure now and then, so that blocks open and close.
    if (round % 2 == 0)
      bytes.insert(random() % bytes.size(), "\nCMD\nk = 1\n");
    if (round % 4 == 0)
      bytes.insert(random() % bytes.size(), "\nEND_\n");
    const TarnParFile file = ParseText(dir, bytes);
    for (const TarnParCommand& command : file)
      EXPECT_FALSE(command.getName().empty());
  }
}
