//===- tarn_example.cpp - A tour of TarnUtilities on bundled data -----------===//
//
// Shows what a program of the suite does with the library:
//   1. configures the logger (log file, failure XML file, level),
//   2. reads a text file of node groups, splits and converts its lines,
//      meets a bad line, fails with a ZEL_Failure carrying its cause, and
//      reports it as text and XML without stopping,
//   3. reads a parameter file set: the command model of the main file, and
//      one command across the include files,
//   4. reads numbers exactly and prints them as their shortest text,
//   5. writes a CSV file of the design areas,
//   6. loads a configuration file, prints it and looks values up by key.
//
// Usage: tarn_example <data directory> <output directory>
//
//===----------------------------------------------------------------------===//
#include <TarnUtilities/TarnUtilities.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|tarn_example] ";

struct NodeGroup {
  std::string name;
  std::vector<int> nodes;
};

// Parses "NAME id, id id": a ZEL_Failure names the file, line and the text
// that is not a node id.
NodeGroup ParseGroup(const std::string& line, const std::string& file, int lineNumber) {
  std::vector<std::string> words;
  TarnStringUtil::Split(line, " \t,", words);
  NodeGroup group;
  group.name = words.at(0);
  for (std::size_t i = 1; i < words.size(); ++i) {
    int id = 0;
    // ToInt is lenient about trailing text; a node id must be digits only.
    if (TarnStringUtil::ToInt(words[i], id) != STATUS_OK || TarnStringUtil::String(id) != words[i])
      throw ZEL_Failure(ZEL_Code(),
                        ZEL_MESSAGE("%s, line %d: \"%s\" is not a node id", file.c_str(),
                                    lineNumber, words[i].c_str()),
                        kHeader);
    group.nodes.push_back(id);
  }
  return group;
}

void ReadNodeGroups(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in)
    throw ZEL_Failure(ZEL_Code(), ZEL_MESSAGE("Cannot open %s", file.c_str()), kHeader);
  std::string line;
  int lineNumber = 0;
  while (getline_dosunix(in, line)) {
    ++lineNumber;
    TarnStringUtil::Trim(line);
    if (line.empty() || line[0] == '#')
      continue;
    try {
      const NodeGroup group = ParseGroup(line, file, lineNumber);
      std::printf("  %-14s %zu nodes: %s\n", group.name.c_str(), group.nodes.size(),
                  TarnStringUtil::String(std::list<int>(group.nodes.begin(), group.nodes.end())).c_str());
    } catch (const ZEL_Exception& e) {
      // Report the bad line with its cause and go on with the next one.
      ZEL_Logging::Failure(ZEL_Failure(e, ZEL_Code(), "Node group skipped", kHeader));
    }
  }
  ZEL_LOG_INFO(kHeader, ZEL_MESSAGE("%d lines read from %s", lineNumber, file.c_str()).c_str());
}


void ShowParameterFiles(const std::string& dataDir) {
  std::string mainFile;
  TarnFileNameUtil::concat_path(dataDir, "model.par", mainFile);
  TarnParFile model(TarnStringUtil::utf8_to_wide(mainFile));
  model.Parse();
  std::printf("\nCommands of %s:\n", mainFile.c_str());
  for (const TarnParCommand& command : model) {
    std::printf("  %s", command.getName().c_str());
    if (!command.getIdName().empty())
      std::printf(" (%s)", command.getIdName().c_str());
    std::printf("\n");
    for (const TarnParSubCommand& line : command.getSubCommands()) {
      std::printf("    %s\n", line.getLine().c_str());
      // A list holds the rest of its block as values.
      if (line.getLineType() == TarnParFileLine::LIST_BEGIN)
        for (const std::string& item : line.getValues())
          std::printf("      - %s\n", item.c_str());
    }
  }

  // The word reader follows the include lines: materials.par holds these.
  std::printf("\nMATERIAL blocks through the includes:\n");
  std::string mainName = mainFile;
  TarnFileNameUtil::path_remove_ext(mainName); // ".par" is the default extension
  for (const TarnParFileParser::Block& block : TarnParFileParser::ParseParameterFile(
           TarnStringUtil::utf8_to_wide(mainName), "material", {})) {
    for (const auto& [key, value] : block)
      std::printf("  %-18s = %s\n", key.c_str(), value.c_str());
    std::printf("\n");
  }
}

void ShowNumbers(const TarnParFile& model) {
  std::printf("Numbers read exactly and printed as their shortest text:\n");
  const TarnParCommand topology = model.getParCommandIdName("bracket_topology");
  for (const char* key : {"volume_fraction", "filter_radius", "max_iterations"}) {
    double value = 0.0;
    const std::string text = topology.getFirstSubCommandFirstValue(key);
    if (TarnStringUtil::ToDouble(text, value) != STATUS_OK)
      throw ZEL_Failure(ZEL_Code(), ZEL_MESSAGE("%s is not a number: \"%s\"", key, text.c_str()),
                        kHeader);
    std::printf("  %-16s \"%s\" => %s\n", key, text.c_str(), TarnStringUtil::String(value).c_str());
  }
  std::printf("  0.1 + 0.2        => %s\n", TarnStringUtil::String(0.1 + 0.2).c_str());
  std::printf("  1/3              => %s\n", TarnStringUtil::String(1.0 / 3.0).c_str());
  std::printf("  2^-1074          => %s\n", TarnStringUtil::String(4.9406564584124654e-324).c_str());
}

void WriteDesignAreas(const TarnParFile& model, const std::string& outDir) {
  std::string csvName;
  TarnFileNameUtil::concat_path(outDir, "design_areas.csv", csvName);
  TarnCsvFileWriter csv;
  std::string error;
  if (!csv.OpenFile(TarnStringUtil::utf8_to_wide(csvName).c_str(), error,
                    TarnCsvFileWriter::FILE_CREATE))
    throw ZEL_Failure(ZEL_Code(), ZEL_MESSAGE("Cannot write %s: %s", csvName.c_str(), error.c_str()),
                      kHeader);
  csv.WriteLine("id, elements, min_density");
  for (const TarnParCommand& area : model.getParCommands("DESIGN_AREA")) {
    const std::vector<TarnParSubCommand> elementLines = area.getSubCommands("elements");
    // The values of a key line are its tokens, the key first.
    const std::size_t elements = elementLines.empty() ? 0 : elementLines[0].getValues().size() - 1;
    double minDensity = 0.0;
    TarnStringUtil::ToDouble(area.getFirstSubCommandFirstValue("min_density"), minDensity);
    csv.AppendStr(area.getIdName().c_str());
    csv.AppendInt(static_cast<int>(elements));
    csv.AppendReal(minDensity);
    csv.FlushCsvLine();
  }
  csv.CloseFile();
  std::printf("\nDesign areas written to %s\n", csvName.c_str());
}

void ShowConfiguration(const std::string& dataDir) {
  std::string cfgName;
  TarnFileNameUtil::concat_path(dataDir, "optimisation.cfg", cfgName);
  ZEL_ConfigFile config;
  config.LoadFile(cfgName);
  std::printf("\nConfiguration %s (%zu keys), as the library prints it:\n", cfgName.c_str(),
              config.GetKeys().size());
  std::ostringstream printed;
  printed << config;
  std::printf("%s", printed.str().c_str());

  std::printf("\nLooked up by key:\n");
  std::printf("  max_iterations  = %d\n", config["max_iterations"].AsInteger());
  std::printf("  convergence_tol = %s\n",
              TarnStringUtil::String(config["convergence_tol"].AsDouble()).c_str());
  for (const auto& loadCase : config["load_cases"])
    std::printf("  load case %d: %-15s factor %s\n", (*loadCase)[0].AsInteger(),
                (*loadCase)[1].GetText().c_str(),
                TarnStringUtil::String((*loadCase)[2].AsDouble()).c_str());
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s <data directory> <output directory>\n", argv[0]);
    return 2;
  }
  const std::string dataDir = argv[1];
  const std::string outDir = argv[2];

  ZEL_LogConfig config;
  config.level = ZEL_Loglevels::INFO;
  config.logFile = u"tarn_example.log";
  config.removeExistingLogFile = true;
  config.echoToStderr = true;
  config.exceptionXmlFile = u"tarn_example_failure.xml";
  config.logXmlExceptionsAsText = true;
  ZEL_Logging::Init("tarn_example", config, TarnStringUtil::utf8_to_wide(outDir));
  ZEL_LOG_NOTICE(kHeader, "TarnUtilities example started");

  int status = 0;
  try {
    std::printf("Node groups:\n");
    std::string file;
    TarnFileNameUtil::concat_path(dataDir, "node_groups.txt", file);
    ReadNodeGroups(file);
    ShowParameterFiles(dataDir);
    std::string mainFile;
    TarnFileNameUtil::concat_path(dataDir, "model.par", mainFile);
    TarnParFile model(TarnStringUtil::utf8_to_wide(mainFile));
    model.Parse();
    ShowNumbers(model);
    WriteDesignAreas(model, outDir);
    ShowConfiguration(dataDir);
  } catch (const ZEL_Exception& e) {
    ZEL_Logging::Failure(e);
    status = 1;
  } catch (const std::exception& e) {
    ZEL_Logging::Failure(e);
    status = 1;
  } catch (...) {
    ZEL_Logging::Failure();
    status = 1;
  }

  ZEL_LOG_NOTICE(kHeader, "TarnUtilities example finished");
  ZEL_Logging::Release();
  std::printf("\nLog file: %s/tarn_example.log\nFailure XML: %s/tarn_example_failure.xml\n",
              outDir.c_str(), outDir.c_str());
  return status;
}
