//===- tool/Arguments.cpp - Command-line arguments of tarnutil ---------------===//
//
// Option removal, the check for unknown options and the readers of counts
// and numbers given on the command line.
//
//===----------------------------------------------------------------------===//
#include "Arguments.h"

#include <TarnUtilities/text/TarnFormatUtil.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>

namespace tarnutil {

bool Arguments::WantsHelp() const {
  for (const std::string& word : words_) {
    if (word == "--")
      return false;
    if (word == "--help" || word == "-h")
      return true;
  }
  return false;
}

std::vector<std::string> Arguments::TakeAll(const std::string& name) {
  std::vector<std::string> values;
  std::vector<std::string> kept;
  const std::string withEquals = name + "=";
  for (std::size_t i = 0; i < words_.size(); ++i) {
    const std::string& word = words_[i];
    if (word == "--") { // everything after "--" is an operand
      kept.insert(kept.end(), words_.begin() + static_cast<std::ptrdiff_t>(i), words_.end());
      break;
    }
    if (word == name) {
      if (i + 1 >= words_.size())
        throw UsageError("option " + name + " needs a value");
      values.push_back(words_[++i]);
    } else if (word.compare(0, withEquals.size(), withEquals) == 0) {
      values.push_back(word.substr(withEquals.size()));
    } else {
      kept.push_back(word);
    }
  }
  words_ = std::move(kept);
  return values;
}

bool Arguments::TakeOption(const std::string& name, std::string& value) {
  const std::vector<std::string> values = TakeAll(name);
  if (values.size() > 1)
    throw UsageError("option " + name + " is given more than once");
  if (values.empty())
    return false;
  value = values.front();
  return true;
}

bool Arguments::TakeFlag(const std::string& name) {
  bool found = false;
  for (std::size_t i = 0; i < words_.size() && words_[i] != "--"; ++i) {
    if (words_[i] == name) {
      words_.erase(words_.begin() + static_cast<std::ptrdiff_t>(i--));
      found = true;
    }
  }
  return found;
}

std::vector<std::string> Arguments::Rest() const {
  std::vector<std::string> rest;
  bool operandsOnly = false;
  for (const std::string& word : words_) {
    if (!operandsOnly && word == "--") {
      operandsOnly = true;
      continue;
    }
    // "-" alone names standard input in many tools; here it is an operand
    // too. "-1.5" and "-.5" are negative numbers, not options.
    const bool looksLikeOption =
        word.size() > 1 && word[0] == '-' &&
        !(std::isdigit(static_cast<unsigned char>(word[1])) || word[1] == '.');
    if (!operandsOnly && looksLikeOption)
      throw UsageError("unknown option " + word);
    rest.push_back(word);
  }
  return rest;
}

long long ParseCount(const std::string& text, long long low, long long high, const std::string& what) {
  const char* begin = text.c_str();
  char* end = nullptr;
  errno = 0;
  const long long value = std::strtoll(begin, &end, 10);
  const bool whole = !text.empty() && *end == '\0' && !std::isspace(static_cast<unsigned char>(text[0]));
  if (!whole || errno == ERANGE || value < low || value > high)
    throw UsageError(what + " must be a whole number from " + std::to_string(low) + " to " +
                     std::to_string(high) + ", not '" + text + "'");
  return value;
}

bool ParseNumber(const std::string& text, double& value) {
  if (text.empty())
    return false;
  const char* end = nullptr;
  value = TarnFormatUtil::str_to_double(text.c_str(), &end);
  return end == text.c_str() + text.size();
}

} // namespace tarnutil
