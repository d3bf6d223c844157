//===- ParExampleData_test.cpp - The bundled example parameter files --------===//
//
// The example program reads examples/data/model.par with both readers; these
// tests keep the files and what the readers make of them in step.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnParFile.h"
#include "TarnUtilities/text/TarnParFileParser.h"
#include "text/parfile/ParLogCapture.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using tarn_test::Wide;
using Blocks = TarnParFileParser::BlockList;

namespace {
const std::string kData = std::string(TARN_SOURCE_DIR) + "/examples/data/";
}

TEST(ParExampleData, CommandModelOfTheMainFile) {
  ParLogCapture log;
  TarnParFile model(Wide(kData + "model.par"));
  model.Parse();
  std::vector<std::string> commands;
  for (const TarnParCommand& command : model)
    commands.push_back(command.getName() + "/" + command.getIdName());
  EXPECT_THAT(commands, ElementsAre("OPTIMIZATION/bracket_topology", "DESIGN_AREA/web",
                                    "DESIGN_AREA/flange", "OUTPUT/results"));
  EXPECT_EQ(
      model.getParCommandIdName("bracket_topology").getFirstSubCommandFirstValue("volume_fraction"),
      "0.35");
  EXPECT_EQ(model.getParCommandIdName("web").getFirstSubCommandFirstValue("elements"), "1001");
  const std::vector<TarnParSubCommand> list =
      model.getParCommandIdName("results").getSubCommands("list_begin");
  ASSERT_EQ(list.size(), 1u);
  EXPECT_THAT(list[0].getValues(), ElementsAre("density", "displacement", "von_mises"));
  EXPECT_THAT(log.Messages("WARNING"), ::testing::IsEmpty());
}

TEST(ParExampleData, WordReaderFollowsTheIncludes) {
  ParLogCapture log;
  const std::u16string model = Wide(kData + "model");
  EXPECT_EQ(TarnParFileParser::ParseParameterFile(model, "MATERIAL", {}),
            (Blocks{{{"id_name", "steel"},
                     {"name", "\"S355 structural steel\""},
                     {"young_modulus", "210000.0"},
                     {"poisson_ratio", "0.3"},
                     {"density", "7.85e-9"}},
                    {{"id_name", "aluminium"},
                     {"name", "'AlMg3'"},
                     {"young_modulus", "70000.0"},
                     {"poisson_ratio", "0.33"},
                     {"density", "2.7e-9"}}}));
  const Blocks loads = TarnParFileParser::ParseParameterFile(model, "load_case", {});
  ASSERT_EQ(loads.size(), 2u);
  EXPECT_EQ(loads[0][2], (TarnParFileParser::KeyValue{"force", "0.0,0.0,-1500.0"}));
  const Blocks optimization = TarnParFileParser::ParseParameterFile(model, "optimization", {});
  ASSERT_EQ(optimization.size(), 1u);
  EXPECT_EQ(optimization[0][1], (TarnParFileParser::KeyValue{"objective", "compliance"}));
  EXPECT_EQ(optimization[0][5], (TarnParFileParser::KeyValue{"method", "\"MMA\""}));
  EXPECT_THAT(log.Messages("WARNING"), ::testing::IsEmpty());
}
