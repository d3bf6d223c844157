//===- TarnParFile_test.cpp - The command model on real files ---------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/TarnParFile.h"
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

TarnParFile ParseText(const TempDir& dir, const std::string& text) {
  dir.Write("m.par", text);
  TarnParFile file(dir.Wide("m.par"));
  file.Parse();
  return file;
}

const char* const kModel = "! model\nignored = 1\n1 2 3\nsave, before\nEND_\nWING\nID_NAME = Left\n"
                           "span = 12.5, 3\nChord = 2\n1.0 2.0\nf(x)\nexit\nEND_WING\nbetween = 7\n"
                           "wing\nid_name = right\nSPAN = 11\nend_\nTAIL\narea = 4\nEND_\n";

// Every test gets a scratch directory and captures the log lines.
class ParFileTest : public ::testing::Test {
protected:
  TempDir dir;
  ParLogCapture log;
};

} // namespace

TEST_F(ParFileTest, GroupsCommandsAndIgnoresLinesOutsideThem) {
  const TarnParFile file = ParseText(dir, kModel);
  EXPECT_THAT(Outline(file),
              ElementsAre("command WING id Left", "  5 ID_NAME [ID_NAME;Left;]",
                          "  4 span [span;12.5;3;]", "  4 Chord [Chord;2;]", "  6 1.0 2.0 []",
                          "  9 f(x) []", "  1 exit [exit;]", "command wing id right",
                          "  5 id_name [id_name;right;]", "  4 SPAN [SPAN;11;]",
                          "command TAIL id ", "  4 area [area;4;]"));
  EXPECT_EQ(file.size(), 3u);
  EXPECT_EQ(file.getFileName(), dir.Wide("m.par"));
}

TEST_F(ParFileTest, ByteOrderMarkAtTheStartIsSkipped) {
  const TarnParFile file = ParseText(dir, "\xEF\xBB\xBF" "TAIL\narea = 4\nEND_\n");
  EXPECT_THAT(Outline(file), ElementsAre("command TAIL id ", "  4 area [area;4;]"));
}

TEST_F(ParFileTest, FindsCommandsByNameAndIdentifier) {
  const TarnParFile file = ParseText(dir, kModel);

  const std::vector<TarnParCommand> wings = file.getParCommands("Wing");
  ASSERT_EQ(wings.size(), 2u);
  EXPECT_EQ(wings[0].getIdName(), "Left");
  EXPECT_EQ(wings[1].getIdName(), "right");
  EXPECT_THAT(file.getParCommands("fuselage"), IsEmpty());

  EXPECT_EQ(file.getParCommandIdName("RIGHT").getName(), "wing");
  EXPECT_EQ(file.getParCommandIdName("left").getFirstSubCommandFirstValue("SPAN"), "12.5");
  EXPECT_EQ(file.findParCommandIdName("nose"), nullptr);
  // A command without an identifier is not found by the empty name.
  EXPECT_EQ(file.findParCommandIdName(""), nullptr);
}

TEST_F(ParFileTest, MissingIdentifierThrows) {
  const TarnParFile file = ParseText(dir, kModel);
  try {
    file.getParCommandIdName("nose");
    FAIL() << "no failure";
  } catch (const ZEL_Failure& failure) {
    EXPECT_EQ(failure.GetMessage(), "Could not find command with ID_NAME: nose");
    EXPECT_EQ(failure.GetStatusCode(), ERR_USER);
    EXPECT_EQ(failure.GetHeader(), "[%T|%n|%P|TarnUtilities|TarnParFile] ");
  }
}

TEST_F(ParFileTest, SubCommandValues) {
  const TarnParFile file = ParseText(dir, "CMD\nsingle\nkey = a, b = c , d\nonly =\n7 8 9\nEND_\n");
  const TarnParCommand& command = *file.begin();
  const std::vector<TarnParSubCommand>& subs = command.getSubCommands();
  ASSERT_EQ(subs.size(), 4u);
  struct Case { std::size_t index; const char* valueLine; };
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

TEST_F(ParFileTest, ListSwallowsTheRestOfItsBlock) {
  const TarnParFile file = ParseText(dir, "OUTPUT\nID_NAME = out\nformat = vtk\nLIST_BEGIN\n"
                                          "density\n! a comment inside the list\n"
                                          "stress = von_mises, 2\nOTHER_COMMAND\n"
                                          "ID_NAME = not_the_id\n  1 2 3  \nEND_\nEMPTY_LIST\n"
                                          "list_begin\nEND_\n");
  EXPECT_THAT(Outline(file),
              ElementsAre("command OUTPUT id out", "  5 ID_NAME [ID_NAME;out;]",
                          "  4 format [format;vtk;]",
                          "  7 LIST_BEGIN [density;stress = von_mises, 2;OTHER_COMMAND;"
                          "ID_NAME = not_the_id;1 2 3;]",
                          "command EMPTY_LIST id ", "  7 list_begin []"));
}

TEST_F(ParFileTest, SkipsCommentAndUndefinedLinesInsideBlocks) {
  const TarnParFile file = ParseText(dir, "CMD\n! comment\n** stars\nCOMMENT text\n--- ...\na = 1\n"
                                          "END_\n");
  EXPECT_THAT(Outline(file), ElementsAre("command CMD id ", "  4 a [a;1;]"));
  EXPECT_THAT(log.Messages("WARNING"),
              ElementsAre("Line # 5 has an undefined contents. Ignoring."));
}

TEST_F(ParFileTest, CommandWithoutEndIsDroppedWithAWarning) {
  const TarnParFile file = ParseText(dir, "FIRST\na = 1\nEND_\n\nSECOND\nb = 2\n");
  EXPECT_THAT(Outline(file), ElementsAre("command FIRST id ", "  4 a [a;1;]"));
  EXPECT_THAT(log.Messages("WARNING"),
              ElementsAre("Command SECOND in line 5 of the file '" + dir / "m.par" +
                          "' has no END_ line. Ignoring it."));
}

TEST_F(ParFileTest, UnreadableFileThrows) {
  dir.Write("folder.par/inside", "");
  struct Case { const char* name; const char* systemText; };
  for (const Case& c :
       {Case{"absent.par", "No such file or directory"}, Case{"folder.par", "Is a directory"}}) {
    SCOPED_TRACE(c.name);
    TarnParFile file(dir.Wide(c.name));
    try {
      file.Parse();
      FAIL() << "no failure";
    } catch (const ZEL_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(),
                "The file '" + dir / c.name +
                    "' cannot be opened.\nSystem error message: " + c.systemText);
      EXPECT_FALSE(failure.GetCode().exists());
      EXPECT_EQ(failure.GetHeader(), "[%T|%n|%P|TarnUtilities|TarnParFile] ");
    }
  }
}

TEST_F(ParFileTest, LogsParsingAndDumpsEveryLevel) {
  const TarnParFile file = ParseText(dir, "CMD\nID_NAME = one\nk = v\nEND_\n");
  EXPECT_THAT(log.Messages("DEBUG"), ::testing::Contains("Parsing " + dir / "m.par"));
  log.lines.clear();
  file.dumpTrace();
  std::vector<std::string> dump;
  for (const CapturedLine& line : log.lines)
    dump.push_back(line.level + " " + line.header + " " + line.message);
  EXPECT_THAT(dump, ElementsAre("TRACE TarnUtilities|TarnParFile Dumping file " + dir / "m.par",
                                "TRACE TarnUtilities|TarnParCommand Dumping: CMD IdName: one",
                                "TRACE TarnUtilities|ParSubCommand Dumping: ID_NAME = one",
                                "TRACE TarnUtilities|ParSubCommand Dumping: k = v"));
}

TEST_F(ParFileTest, BinaryGarbageDoesNotBreakParsing) {
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
