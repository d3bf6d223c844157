//===- TarnFileNameUtil.cpp - File names ------------------------------------===//
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "system/PathLexical.h"
#include "system/WideLower.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

// Computes the length of a zero-terminated string of either width.
template <typename C> std::size_t Length(const C* s) {
  return std::char_traits<C>::length(s);
}

template <typename C> const C* FindExtensionIn(const C* path) {
  if (path == nullptr)
    return nullptr;
  const std::size_t n = Length(path);
  for (std::size_t i = n; i > 0; --i) {
    if (path[i - 1] == C('.'))
      return path + i - 1;
    if (TarnPath::IsSeparator(path[i - 1]))
      break;
  }
  return path + n;
}

// Computes ASCII-only upper case, the folding of the narrow extension test.
char AsciiUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

bool NarrowHasExt(const std::string& path, const char* ext) {
  const bool extWasEmpty = *ext == '\0';
  if (*ext == '.')
    ++ext;
  const std::size_t dot = TarnPath::FindExtension(path);
  if (dot == std::string::npos)
    return extWasEmpty;
  const char* p = path.c_str() + dot + 1;
  const char* const end = path.c_str() + path.size();
  for (; p != end && *ext != '\0'; ++p, ++ext)
    if (AsciiUpper(*p) != AsciiUpper(*ext))
      return false;
  return p == end && *ext == '\0';
}

bool WideHasExt(std::u16string path, std::u16string ext) {
  TarnPath::LowerCase(path);
  TarnPath::LowerCase(ext);
  return path.size() >= ext.size() &&
         path.compare(path.size() - ext.size(), ext.size(), ext) == 0;
}

template <typename C>
std::basic_string<C> SetExtension(const std::basic_string<C>& path,
                                  const std::basic_string<C>& ext) {
  std::basic_string<C> out;
  const std::size_t dot = TarnPath::FindExtension(path);
  const bool extHasDot = !ext.empty() && ext.front() == C('.');
  if (dot != std::basic_string<C>::npos) {
    out.assign(path, 0, dot + 1);
    out.append(ext, extHasDot ? 1 : 0, std::basic_string<C>::npos);
  } else {
    out = path;
    if (!extHasDot)
      out.push_back(C('.'));
    out += ext;
  }
  return out;
}

template <typename C>
std::basic_string<C> MakePath(const std::basic_string<C>& dir, const std::basic_string<C>& name) {
  std::basic_string<C> out = dir;
  TarnPath::AddSeparator(out);
  out.append(name, TarnPath::DirectoryLength(name), std::basic_string<C>::npos);
  return out;
}

template <typename C>
std::basic_string<C> AddPrefix(const std::basic_string<C>& path,
                               const std::basic_string<C>& prefix) {
  const std::size_t dirLength = TarnPath::DirectoryLength(path);
  return MakePath(path.substr(0, dirLength), prefix + path.substr(dirLength));
}

template <typename C>
std::basic_string<C> AddSuffix(const std::basic_string<C>& path,
                               const std::basic_string<C>& suffix) {
  const std::size_t dot = TarnPath::FindExtension(path);
  if (dot == std::basic_string<C>::npos)
    return path + suffix;
  std::basic_string<C> out = path.substr(0, dot);
  out += suffix;
  out.append(path, dot, std::basic_string<C>::npos);
  return out;
}

// Joins part to a non-empty narrow path in place. Quotes are handled by
// extend_quoted_str, which also trims the string it extends.
void NarrowJoin(std::string& path, const std::string& part) {
  static const std::string kSeparator(1, '/');
  const char last = TarnPath::IsQuoted(path) ? path[path.size() - 2] : path.back();
  const bool needSeparator = !TarnPath::IsSeparator(last);
  if (TarnStringUtil::is_quoted_str(part)) {
    std::string joined = part;
    if (needSeparator)
      TarnStringUtil::extend_quoted_str(joined, kSeparator, std::string());
    TarnStringUtil::extend_quoted_str(joined, path, std::string());
    path = std::move(joined);
    return;
  }
  if (needSeparator)
    TarnStringUtil::extend_quoted_str(path, std::string(), kSeparator);
  TarnStringUtil::extend_quoted_str(path, std::string(), part);
}

std::u16string WideJoin(std::u16string path, std::u16string part) {
  TarnPath::RemoveBlanks(path);
  const bool quoted = TarnPath::IsQuoted(path);
  TarnPath::Unquote(path);
  TarnPath::AddSeparator(path);
  TarnPath::RemoveBlanks(part);
  TarnPath::Unquote(part);
  path += part;
  if (quoted)
    TarnPath::QuoteIfSpaces(path);
  return path;
}

// Computes the current directory; empty when it cannot be read (for example
// when it was removed).
std::string CurrentDirectory() {
  std::string buffer(4096, '\0');
  for (;;) {
    if (::getcwd(&buffer[0], buffer.size()) != nullptr) {
      buffer.resize(std::strlen(buffer.c_str()));
      return buffer;
    }
    if (errno != ERANGE || buffer.size() > (std::size_t(1) << 24))
      return std::string();
    buffer.resize(buffer.size() * 2);
  }
}

} // namespace

// ----------------------------------------------------------------- extensions

const char* TarnFileNameUtil::path_find_ext(const char* path) { return FindExtensionIn(path); }
const char16_t* TarnFileNameUtil::path_find_ext(const char16_t* path) {
  return FindExtensionIn(path);
}

bool TarnFileNameUtil::path_has_ext(const std::string& path) {
  return TarnPath::FindExtension(path) != std::string::npos;
}
bool TarnFileNameUtil::path_has_ext(const std::u16string& path) {
  return TarnPath::FindExtension(path) != std::u16string::npos;
}
bool TarnFileNameUtil::path_has_ext(const char* path) {
  return path != nullptr && *path_find_ext(path) == '.';
}
bool TarnFileNameUtil::path_has_ext(const char16_t* path) {
  return path != nullptr && *path_find_ext(path) == u'.';
}

bool TarnFileNameUtil::path_has_ext(const std::string& path, const std::string& ext) {
  return NarrowHasExt(path, ext.c_str());
}
bool TarnFileNameUtil::path_has_ext(const char* path, const char* ext) {
  return NarrowHasExt(path ? path : "", ext ? ext : "");
}
bool TarnFileNameUtil::path_has_ext(const std::u16string& path, const std::u16string& ext) {
  return WideHasExt(path, ext);
}
bool TarnFileNameUtil::path_has_ext(const char16_t* path, const char16_t* ext) {
  return WideHasExt(path ? path : u"", ext ? ext : u"");
}

void TarnFileNameUtil::path_remove_ext(std::string& path) {
  const std::size_t dot = TarnPath::FindExtension(path);
  if (dot != std::string::npos)
    path.erase(dot);
}
void TarnFileNameUtil::path_remove_ext(std::u16string& path) {
  const std::size_t dot = TarnPath::FindExtension(path);
  if (dot != std::u16string::npos)
    path.erase(dot);
}
void TarnFileNameUtil::path_remove_ext(char* path) {
  if (path != nullptr)
    *const_cast<char*>(path_find_ext(path)) = '\0';
}

void TarnFileNameUtil::path_set_ext(std::string& path, const std::string& ext) {
  path = SetExtension(path, ext);
}
void TarnFileNameUtil::path_set_ext(std::u16string& path, const std::u16string& ext) {
  path = SetExtension(path, ext);
}
void TarnFileNameUtil::path_set_ext(const std::string& path, const std::string& ext,
                                    std::string& out) {
  out = SetExtension(path, ext);
}
void TarnFileNameUtil::path_set_ext(const std::u16string& path, const std::u16string& ext,
                                    std::u16string& out) {
  out = SetExtension(path, ext);
}

// ---------------------------------------------------- directories and names

void TarnFileNameUtil::split_path(const std::string& path, std::string& dir, std::string& name) {
  const std::size_t n = TarnPath::DirectoryLength(path);
  std::string rest = path.substr(n);
  dir = path.substr(0, n);
  name = std::move(rest);
}
void TarnFileNameUtil::split_path(const std::u16string& path, std::u16string& dir,
                                  std::u16string& name) {
  const std::size_t n = TarnPath::DirectoryLength(path);
  std::u16string rest = path.substr(n);
  dir = path.substr(0, n);
  name = std::move(rest);
}

void TarnFileNameUtil::make_path(const std::string& dir, const std::string& name,
                                 std::string& out) {
  out = MakePath(dir, name);
}
void TarnFileNameUtil::make_path(const std::u16string& dir, const std::u16string& name,
                                 std::u16string& out) {
  out = MakePath(dir, name);
}

void TarnFileNameUtil::concat_path(std::string& path, const std::string& part) {
  if (path.empty())
    path = part;
  else
    NarrowJoin(path, part);
}
void TarnFileNameUtil::concat_path(const std::string& path, const std::string& part,
                                   std::string& out) {
  std::string result = path;
  concat_path(result, part);
  out = std::move(result);
}
void TarnFileNameUtil::concat_path(const std::string& path, const std::vector<std::string>& parts,
                                   std::string& out) {
  std::string result = path;
  std::size_t i = 0;
  if (result.empty()) {
    while (i < parts.size() && parts[i].empty())
      ++i;
    if (i < parts.size())
      result = parts[i++];
  }
  for (; i < parts.size(); ++i)
    concat_path(result, parts[i]);
  out = std::move(result);
}
void TarnFileNameUtil::concat_path(const std::u16string& path, const std::u16string& part,
                                   std::u16string& out) {
  out = path.empty() ? part : WideJoin(path, part);
}

void TarnFileNameUtil::add_file_name_prefix(const std::string& path, const std::string& prefix,
                                            std::string& out) {
  out = AddPrefix(path, prefix);
}
void TarnFileNameUtil::add_file_name_prefix(const std::u16string& path,
                                            const std::u16string& prefix, std::u16string& out) {
  out = AddPrefix(path, prefix);
}

void TarnFileNameUtil::add_file_name_suffix(const std::string& path, const std::string& suffix,
                                            std::string& out) {
  out = AddSuffix(path, suffix);
}
void TarnFileNameUtil::add_file_name_suffix(const std::u16string& path,
                                            const std::u16string& suffix, std::u16string& out) {
  out = AddSuffix(path, suffix);
}

// ------------------------------------------------- absolute names and quotes

void TarnFileNameUtil::normalize_path(const std::string& path, std::string& out) {
  if (path.empty()) {
    out = path;
    return;
  }
  const bool quoted = TarnPath::IsQuoted(path);
  const std::string inner = quoted ? path.substr(1, path.size() - 2) : path;
  std::string full;
  if (!inner.empty() && TarnPath::IsSeparator(inner.front())) {
    full = TarnPath::AbsolutePath(inner, std::string());
  } else {
    const std::string cwd = CurrentDirectory();
    if (!cwd.empty())
      full = TarnPath::AbsolutePath(inner, cwd);
  }
  out = quoted ? '"' + full + '"' : full;
}

void TarnFileNameUtil::normalize_path(const std::u16string& path, std::u16string& out) {
  if (path.empty()) {
    out = path;
    return;
  }
  const bool quoted = TarnPath::IsQuoted(path);
  std::u16string inner = path;
  TarnPath::Unquote(inner);
  std::u16string full;
  if (!inner.empty() && TarnPath::IsSeparator(inner.front())) {
    full = TarnPath::AbsolutePath(inner, std::u16string());
  } else {
    const std::string cwd = CurrentDirectory();
    if (!cwd.empty())
      full = TarnPath::AbsolutePath(inner, TarnStringUtil::utf8_to_wide(cwd));
  }
  if (quoted)
    TarnPath::QuoteIfSpaces(full);
  out = std::move(full);
}

void TarnFileNameUtil::path_unquote(std::u16string& path) { TarnPath::Unquote(path); }

void TarnFileNameUtil::path_unquote(char16_t* path) {
  if (path == nullptr)
    return;
  const std::size_t n = Length(path);
  if (n >= 2 && path[0] == u'"' && path[n - 1] == u'"') {
    std::char_traits<char16_t>::move(path, path + 1, n - 2);
    path[n - 2] = u'\0';
  }
}
