//===- tarn_example.cpp - A tour of TarnUtilities on bundled data -----------===//
//
// Shows what a program of the suite does with the library:
//   1. configures the logger (log file, failure XML file, level),
//   2. reads a text file of node groups, splits and converts its lines,
//   3. meets a bad line, fails with a ZEL_Failure carrying its cause, and
//      reports it as text and XML without stopping.
//
// Usage: tarn_example <data directory> <output directory>
//
//===----------------------------------------------------------------------===//
#include <TarnUtilities/TarnUtilities.h>

#include <cstdio>
#include <fstream>
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
