//===- FortranArgs.cpp - Arguments of the _F entry points --------------------===//
#include "container/FortranArgs.h"

#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <algorithm>
#include <cstring>

namespace ZEL_detail {

void FailArgument(const FortranSite& site, const std::string& message) {
  throw StatusFailure(ERR_INVALID_ARGUMENT, message, site.binding.header);
}

void** HandleOutput(const FortranSite& site, void** handle) {
  if (!handle)
    FailArgument(site, "No place for the new handle was given (null pointer).");
  *handle = nullptr;
  return handle;
}

std::size_t CheckedCount(const FortranSite& site, std::int32_t count, const char* what) {
  if (count < 0)
    FailArgument(site, ZEL_MESSAGE("The %s must not be negative, but is %d.", what, count));
  return static_cast<std::size_t>(count);
}

std::string TextArgument(const FortranSite& site, const char* chars, std::int32_t length) {
  const std::size_t n = CheckedCount(site, length, "length of the text");
  if (n > 0 && !chars)
    FailArgument(site, ZEL_MESSAGE("No characters were given for a text of length %d.", length));
  return std::string(chars ? chars : "", n);
}

std::string NameArgument(const FortranSite& site, const char* chars, std::int32_t length) {
  std::string name = TextArgument(site, chars, length);
  TarnStringUtil::Trim(name);
  if (name.find('\0') != std::string::npos)
    FailArgument(site, "The path contains a zero character.");
  // utf8_to_wide reads text that is not strict UTF-8 as Latin-1, which
  // changes every byte from 0x80 on; so the round trip gives the name back
  // exactly when it is strict UTF-8.
  if (TarnStringUtil::wide_to_utf8(TarnStringUtil::utf8_to_wide(name)) != name)
    FailArgument(site, ZEL_MESSAGE("The path %s is not valid utf8 encoded.", name.c_str()));
  return name;
}

ZelStatusCode CopyToFortran(const FortranSite& site, const std::string& text, char* out,
                            std::int32_t capacity) {
  const std::size_t room = CheckedCount(site, capacity, "capacity of the result");
  if (room > 0 && !out)
    FailArgument(site, "No characters were given for the result (null pointer).");
  if (room == 0)
    return text.empty() ? STATUS_OK : ERR_INSUFFICIENT_RESULT_SPACE;
  std::size_t n = std::min(room, text.size());
  // Cut before a UTF-8 sequence that would not fit whole: step back over
  // continuation bytes (10xxxxxx) to the lead byte of the cut character.
  if (n < text.size())
    while (n > 0 && (static_cast<unsigned char>(text[n]) & 0xC0) == 0x80)
      --n;
  std::memcpy(out, text.data(), n);
  std::memset(out + n, ' ', room - n);
  return n < text.size() ? ERR_INSUFFICIENT_RESULT_SPACE : STATUS_OK;
}

void BlankFortranText(char* out, std::int32_t capacity) noexcept {
  if (out && capacity > 0)
    std::memset(out, ' ', static_cast<std::size_t>(capacity));
}

} // namespace ZEL_detail
