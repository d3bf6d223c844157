//===- system/PathLexical.h - Path text operations for both widths -*- C++ -*-===//
//
// The character-level work behind TarnFileNameUtil, written once for narrow
// (char) and wide (char16_t) names: finding the extension, splitting at the
// last separator, the quote and blank helpers of the wide join, the suffix
// test and the lexical absolute path. Both '/' and '\' separate components;
// '/' is the separator these functions insert. Nothing here touches the file
// system except AbsolutePath, which reads the current directory.
//
// Every function works on the whole string, whatever its length: there are
// no fixed working buffers.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_SYSTEM_PATHLEXICAL_H
#define TARNUTILITIES_SRC_SYSTEM_PATHLEXICAL_H

#include <cstddef>
#include <string>
#include <vector>

namespace TarnPath {

template <typename C> constexpr bool IsSeparator(C c) { return c == C('/') || c == C('\\'); }

/// Position of the extension's dot in the last component, or npos.
///   "a/b.c/d" => npos,  ".cfg" => 0,  "x.y.z" => 3,  "name." => 4
template <typename C> std::size_t FindExtension(const std::basic_string<C>& path) {
  for (std::size_t i = path.size(); i > 0; --i) {
    const C c = path[i - 1];
    if (c == C('.'))
      return i - 1;
    if (IsSeparator(c))
      break;
  }
  return std::basic_string<C>::npos;
}

/// Length of the directory part: everything up to and including the last
/// separator (0 when there is none).
///   "d/e\f.txt" => 4,  "f.txt" => 0,  "d/" => 2
template <typename C> std::size_t DirectoryLength(const std::basic_string<C>& path) {
  for (std::size_t i = path.size(); i > 0; --i)
    if (IsSeparator(path[i - 1]))
      return i;
  return 0;
}

/// True when s has at least two characters and both ends are '"'.
template <typename C> bool IsQuoted(const std::basic_string<C>& s) {
  return s.size() >= 2 && s.front() == C('"') && s.back() == C('"');
}

/// Removes one pair of enclosing quotes, if there is one.
template <typename C> void Unquote(std::basic_string<C>& s) {
  if (IsQuoted(s)) {
    s.pop_back();
    s.erase(0, 1);
  }
}

/// Encloses s in quotes when it contains a space.
template <typename C> void QuoteIfSpaces(std::basic_string<C>& s) {
  if (s.find(C(' ')) != std::basic_string<C>::npos) {
    s.insert(s.begin(), C('"'));
    s.push_back(C('"'));
  }
}

/// Removes leading and trailing spaces (only ' ').
template <typename C> void RemoveBlanks(std::basic_string<C>& s) {
  std::size_t last = s.size();
  while (last > 0 && s[last - 1] == C(' '))
    --last;
  s.erase(last);
  std::size_t first = 0;
  while (first < s.size() && s[first] == C(' '))
    ++first;
  s.erase(0, first);
}

/// Appends '/' unless s is empty or already ends with a separator.
template <typename C> void AddSeparator(std::basic_string<C>& s) {
  if (!s.empty() && !IsSeparator(s.back()))
    s.push_back(C('/'));
}

/// The absolute form of path against base (an absolute directory as the
/// system names it), with
/// "." and ".." removed lexically, components joined by '/'. A trailing
/// separator of path is kept. ".." at the root stays at the root.
///   ("a/./b/../c", "/w") => "/w/a/c",  ("/x//y/", "/w") => "/x/y/",
///   ("..\\..\\..", "/w") => "/"
template <typename C>
std::basic_string<C> AbsolutePath(const std::basic_string<C>& path,
                                  const std::basic_string<C>& base) {
  using String = std::basic_string<C>;
  const bool absolute = !path.empty() && IsSeparator(path.front());
  std::vector<String> parts;
  // The base comes from the system, where '\\' is an ordinary character of a
  // name; only path is taken apart at both separators.
  auto addComponents = [&parts](const String& text, bool bothSeparators) {
    std::size_t i = 0;
    while (i < text.size()) {
      std::size_t j = i;
      while (j < text.size() &&
             !(bothSeparators ? IsSeparator(text[j]) : text[j] == C('/')))
        ++j;
      String part = text.substr(i, j - i);
      if (part == String(1, C('.')) || part.empty()) {
        // Nothing to do: "." and empty components vanish.
      } else if (part == String(2, C('.'))) {
        if (!parts.empty())
          parts.pop_back();
      } else {
        parts.push_back(std::move(part));
      }
      i = j + 1;
    }
  };
  if (!absolute)
    addComponents(base, false);
  addComponents(path, true);
  String out;
  for (const String& part : parts) {
    out.push_back(C('/'));
    out += part;
  }
  if (out.empty() || (!path.empty() && IsSeparator(path.back())))
    out.push_back(C('/'));
  return out;
}

} // namespace TarnPath

#endif // TARNUTILITIES_SRC_SYSTEM_PATHLEXICAL_H
