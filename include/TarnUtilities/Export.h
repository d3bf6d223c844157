//===- TarnUtilities/Export.h - Symbol visibility --------------*- C++ -*-===//
//
// The library is built with hidden visibility; everything that forms the
// public interface is marked with TARN_API so that it is exported from
// libTarnUtilities.so. The Fortran entry points use TARN_API as well.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_EXPORT_H
#define TARNUTILITIES_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define TARN_API __attribute__((visibility("default")))
#else
#define TARN_API
#endif

#endif // TARNUTILITIES_EXPORT_H
