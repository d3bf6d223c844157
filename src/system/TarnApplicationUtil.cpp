//===- TarnApplicationUtil.cpp - Command line -------------------------------===//
#include "TarnUtilities/system/TarnApplicationUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <fstream>
#include <iterator>
#include <utility>

namespace {

// Reads the kernel's record of the command line: the arguments, each ended
// by a zero byte. False if it cannot be read.
bool ReadProcCommandLine(std::vector<std::string>& args) {
  std::ifstream in("/proc/self/cmdline", std::ios::binary);
  if (!in)
    return false;
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad() || bytes.empty())
    return false;
  std::size_t start = 0;
  while (start < bytes.size()) {
    std::size_t end = bytes.find('\0', start);
    if (end == std::string::npos)
      end = bytes.size();
    args.push_back(bytes.substr(start, end - start));
    start = end + 1;
  }
  return true;
}

} // namespace

namespace TarnApplicationUtil {

std::vector<std::u16string> commandline_to_wide(int argc, char** argv) {
  std::vector<std::u16string> wide;
  wide.reserve(argc > 0 ? static_cast<std::size_t>(argc) : 0);
  std::vector<std::string> args;
  if (!ReadProcCommandLine(args) && argv != nullptr)
    for (int i = 0; i < argc && argv[i] != nullptr; ++i)
      args.emplace_back(argv[i]);
  for (const std::string& arg : args)
    wide.push_back(TarnStringUtil::utf8_to_wide(arg));
  return wide;
}

void get_argc_argv(const std::vector<std::u16string>& wideArgs, std::vector<std::string>& utf8Args,
                   std::vector<char*>& pointers, int& argc, char**& argv) {
  utf8Args.clear();
  pointers.clear();
  utf8Args.reserve(wideArgs.size());
  for (const std::u16string& arg : wideArgs)
    utf8Args.push_back(TarnStringUtil::wide_to_utf8(arg));
  pointers.reserve(utf8Args.size() + 1);
  for (std::string& arg : utf8Args)
    if (!arg.empty())
      pointers.push_back(&arg[0]);
  argc = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  argv = pointers.data();
}

TarnUnicodeCommandlineTool::TarnUnicodeCommandlineTool(int argc, char** argv) {
  int count = 0;
  get_argc_argv(commandline_to_wide(argc, argv), utf8Args_, pointers_, count, argv_);
  argc_ = count;
}

TarnUnicodeCommandlineTool::TarnUnicodeCommandlineTool(const TarnUnicodeCommandlineTool& other)
    : utf8Args_(other.utf8Args_) {
  Repoint();
}

// A moved vector keeps its elements where they are, so the pointers taken
// over with it stay valid; nothing is allocated.
TarnUnicodeCommandlineTool::TarnUnicodeCommandlineTool(TarnUnicodeCommandlineTool&& other) noexcept
    : argc_(other.argc_), utf8Args_(std::move(other.utf8Args_)),
      pointers_(std::move(other.pointers_)) {
  argv_ = pointers_.empty() ? nullptr : pointers_.data();
  other.utf8Args_.clear();
  other.pointers_.clear();
  other.argc_ = 0;
  other.argv_ = nullptr;
}

TarnUnicodeCommandlineTool&
TarnUnicodeCommandlineTool::operator=(const TarnUnicodeCommandlineTool& other) {
  if (this != &other) {
    utf8Args_ = other.utf8Args_;
    Repoint();
  }
  return *this;
}

TarnUnicodeCommandlineTool&
TarnUnicodeCommandlineTool::operator=(TarnUnicodeCommandlineTool&& other) noexcept {
  if (this != &other) {
    argc_ = other.argc_;
    utf8Args_ = std::move(other.utf8Args_);
    pointers_ = std::move(other.pointers_);
    argv_ = pointers_.empty() ? nullptr : pointers_.data();
    other.utf8Args_.clear();
    other.pointers_.clear();
    other.argc_ = 0;
    other.argv_ = nullptr;
  }
  return *this;
}

void TarnUnicodeCommandlineTool::Repoint() {
  // Copied strings live elsewhere: point at the new ones.
  pointers_.clear();
  pointers_.reserve(utf8Args_.size() + 1);
  for (std::string& arg : utf8Args_)
    if (!arg.empty())
      pointers_.push_back(&arg[0]);
  argc_ = static_cast<std::int32_t>(pointers_.size());
  pointers_.push_back(nullptr);
  argv_ = pointers_.data();
}

} // namespace TarnApplicationUtil
