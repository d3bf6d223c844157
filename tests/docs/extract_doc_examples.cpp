//===- tests/docs/extract_doc_examples.cpp - Docs' C++ into one program ---===//
//
// Collects the ```cpp blocks of the Markdown pages into one translation unit
// so that the build proves every example compiles and links against the
// library:
//   - a block becomes the body of a function of its own;
//   - a block whose first line is "// file scope" (declarations, helper
//     functions) is placed at namespace scope instead;
//   - its #include lines move to the top of the file.
// #line directives point every compiler message at the page and line.
//
// Usage: extract_doc_examples OUTPUT.cpp PAGE.md...
//
//===----------------------------------------------------------------------===//
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Block {
  std::string page;
  int firstLine = 0; // line number of the block's first line in the page
  std::vector<std::string> lines;
};

bool StartsWith(const std::string& s, const std::string& prefix) { return s.compare(0, prefix.size(), prefix) == 0; }

bool ReadBlocks(const std::string& page, std::vector<Block>& blocks) {
  std::ifstream in(page);
  if (!in) {
    std::cerr << "cannot read " << page << "\n";
    return false;
  }
  std::string line;
  int number = 0;
  Block* open = nullptr;
  while (std::getline(in, line)) {
    ++number;
    if (open == nullptr && line == "```cpp") {
      blocks.push_back(Block{page, number + 1, {}});
      open = &blocks.back();
    } else if (open != nullptr && StartsWith(line, "```")) {
      open = nullptr;
    } else if (open != nullptr) {
      open->lines.push_back(line);
    }
  }
  if (open != nullptr) {
    std::cerr << page << ":" << open->firstLine - 1 << ": ```cpp block is not closed\n";
    return false;
  }
  return true;
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: extract_doc_examples OUTPUT.cpp PAGE.md...\n";
    return 2;
  }
  std::vector<Block> blocks;
  for (int i = 2; i < argc; ++i)
    if (!ReadBlocks(argv[i], blocks))
      return 1;

  std::set<std::string> includes = {"#include <TarnUtilities/TarnUtilities.h>", "#include <cmath>",
                                    "#include <cstddef>", "#include <iostream>", "#include <string>",
                                    "#include <vector>"};
  std::ostringstream body;
  std::vector<std::string> functions;
  for (std::size_t b = 0; b < blocks.size(); ++b) {
    Block& block = blocks[b];
    for (std::string& line : block.lines)
      if (StartsWith(line, "#include")) {
        includes.insert(line);
        line.clear(); // keeps the line numbers
      }
    const bool fileScope = !block.lines.empty() && block.lines.front() == "// file scope";
    const std::string name = "tarn_doc_example_" + std::to_string(b + 1);
    body << "\n// " << block.page << ", line " << block.firstLine << "\n";
    if (fileScope) {
      body << "namespace " << name << " {\n";
    } else {
      body << "void " << name << "() {\n";
      functions.push_back(name);
    }
    body << "#line " << block.firstLine << " \"" << block.page << "\"\n";
    for (const std::string& line : block.lines)
      body << line << "\n";
    body << "}\n";
  }

  std::ofstream out(argv[1]);
  out << "// Generated from the ```cpp blocks of docs/ by extract_doc_examples: do not edit.\n";
  for (const std::string& include : includes)
    out << include << "\n";
  for (const std::string& function : functions)
    out << "void " << function << "();\n";
  out << body.str() << "\n";
  // The examples are compiled and linked, not run: they name files of the
  // pages' own stories.
  out << "int main() {\n  void (*const examples[])() = {";
  for (const std::string& function : functions)
    out << function << ", ";
  out << "nullptr};\n  return examples[sizeof(examples) / sizeof(examples[0]) - 1] == nullptr ? 0 : 1;\n}\n";
  out.close();
  if (!out) {
    std::cerr << "cannot write " << argv[1] << "\n";
    return 1;
  }
  std::cout << blocks.size() << " examples from " << argc - 2 << " pages\n";
  return 0;
}
