//===- TarnFormatUtil_F.cpp - Fortran entry points for number text ----------===//
//
// Number lists and floats printed into a Fortran character variable,
// blank-padded and never zero-terminated.
//
// A list that does not fit gets as many whole items as fit (never a cut
// number or a trailing separator), blanks after them, and the status
// ERR_INSUFFICIENT_RESULT_SPACE. A float that does not fit fills the
// variable with '*', as Fortran's own formatted output does.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/text/TarnFormatUtil.h"
#include "container/FortranArgs.h"

#include <cstring>

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("TarnFormatUtil_F");

namespace {

// Copies a list text into the caller's characters, cut after the last whole
// item that fits.
ZelStatusCode CopyList(const FortranSite& site, std::string text, char* out, std::int32_t capacity) {
  const std::size_t room = CheckedCount(site, capacity, "capacity of the result");
  if (text.size() > room) {
    // Items hold no ", ", so the last separator that starts within the room
    // ends the last whole item that fits.
    const std::size_t cut = text.rfind(", ", room);
    text.resize(cut == std::string::npos ? 0 : cut);
    CopyToFortran(site, text, out, capacity);
    return ERR_INSUFFICIENT_RESULT_SPACE;
  }
  return CopyToFortran(site, text, out, capacity);
}

// The common body of the two list entry points.
template <typename T, typename Print>
ZelStatusCode PrintList(const FortranSite& site, const T* values, const std::int32_t* count,
                        char* out, const std::int32_t* capacity, Print print) {
  const std::int32_t room = ArgumentValue(site, capacity, "capacity");
  const std::size_t n = CheckedCount(site, ArgumentValue(site, count, "count"), "count");
  if (n > 0 && !values)
    FailArgument(site, "No values were given (null pointer).");
  return CopyList(site, print(values, n), out, room);
}

} // namespace

void FormatUtil_PrintIntList_F(const std::int32_t* values, const std::int32_t* count, char* out,
                               const std::int32_t* capacity, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  if (capacity)
    BlankFortranText(out, *capacity);
  GuardWithStatus(site, status, [&] {
    return PrintList(site, values, count, out, capacity, &TarnFormatUtil::int_list_to_str);
  });
}

void FormatUtil_PrintDbleList_F(const double* values, const std::int32_t* count, char* out,
                                const std::int32_t* capacity, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  if (capacity)
    BlankFortranText(out, *capacity);
  GuardWithStatus(site, status, [&] {
    return PrintList(site, values, count, out, capacity, &TarnFormatUtil::double_list_to_str);
  });
}

void FormatUtil_float_to_str_F(float value, char* out, std::int32_t capacity) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardOrTerminate(site, "Failed to print a float", [&] {
    if (!out || capacity < 1)
      return;
    const std::string text = TarnFormatUtil::float_to_str(value);
    const auto room = static_cast<std::size_t>(capacity);
    if (text.size() > room) {
      std::memset(out, '*', room);
      return;
    }
    std::memcpy(out, text.data(), text.size());
    std::memset(out + text.size(), ' ', room - text.size());
  });
}
