//===- fuzz/config_fuzzer.cpp - The configuration loader --------------------===//
//
// One input is the contents of a configuration file. It is loaded from a
// file (all its bytes) and, when it holds no zero byte, also from memory
// with LoadText: both ways must give the same definitions and the same
// failure. Whatever was loaded (also the definitions before a syntax error)
// is printed, and the printout must load again without error into the same
// keys, kinds, texts and values, unless a string holds a double quote, which
// print does not escape. A copy of the configuration must equal it too.
//
//===----------------------------------------------------------------------===//
#include "FuzzSupport.h"

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>

using tarn_fuzz::Check;
using tarn_fuzz::Escaped;

namespace {

using Loaded = tarn_fuzz::Loaded<ZEL_ConfigFile>;
template <typename LoadFunction> Loaded Load(LoadFunction load) {
  return tarn_fuzz::Load<ZEL_ConfigFile>(load);
}

bool HoldsDoubleQuote(const ZEL_ConfigFileItem& item) {
  if (item.IsString())
    return item.GetText().find('"') != std::string::npos;
  for (const auto& child : item)
    if (HoldsDoubleQuote(*child))
      return true;
  return false;
}

// Equal kinds, texts and values, children compared in turn.
bool SameItem(const ZEL_ConfigFileItem& a, const ZEL_ConfigFileItem& b) {
  if (a.IsList() != b.IsList() || a.IsInteger() != b.IsInteger() ||
      a.IsDouble() != b.IsDouble() || a.GetText() != b.GetText() || a.length() != b.length())
    return false;
  if (a.IsInteger() && a.AsInteger() != b.AsInteger())
    return false;
  if (a.IsDouble() && std::memcmp(&a.AsDouble(), &b.AsDouble(), sizeof(double)) != 0)
    return false;
  auto child = b.begin();
  for (const auto& mine : a)
    if (!SameItem(*mine, **child++))
      return false;
  return true;
}

bool SameConfig(const ZEL_ConfigFile& a, const ZEL_ConfigFile& b) {
  if (a.GetKeys() != b.GetKeys())
    return false;
  for (const std::string& key : a.GetKeys())
    if (!b.has_key(key) || !SameItem(a[key], b[key]))
      return false;
  return true;
}

std::string Printed(const ZEL_ConfigFile& config) {
  std::ostringstream out;
  out << config;
  return out.str();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  tarn_fuzz::SilentLog::Install();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  tarn_fuzz::ScratchDir::Write("input.cfg", text);
  const std::string fileName = tarn_fuzz::ScratchDir::Path() + "/input.cfg";

  const Loaded fromFile = Load([&](ZEL_ConfigFile& c) { c.LoadFile(fileName); });
  if (text.find('\0') == std::string::npos) {
    const Loaded fromText = Load([&](ZEL_ConfigFile& c) { c.LoadText(text.c_str(), fileName); });
    Check(fromText.failure == fromFile.failure && SameConfig(fromText.object, fromFile.object),
          "loading from memory and from the file agree",
          "file: " + fromFile.failure + "\ntext: " + fromText.failure);
  }

  const ZEL_ConfigFile& config = fromFile.object;
  const ZEL_ConfigFile copy(config);
  Check(SameConfig(copy, config), "a copy equals its original");

  for (const std::string& key : config.GetKeys())
    if (HoldsDoubleQuote(config[key]))
      return 0;
  const std::string printed = Printed(config);
  const Loaded reloaded = Load([&](ZEL_ConfigFile& c) { c.LoadText(printed.c_str(), "printed"); });
  Check(reloaded.failure.empty() && SameConfig(reloaded.object, config),
        "the printout loads again into the same configuration",
        "failure: " + reloaded.failure + "\nprinted:\n" + Escaped(printed) + "\nreprinted:\n" +
            Escaped(Printed(reloaded.object)));
  return 0;
}
