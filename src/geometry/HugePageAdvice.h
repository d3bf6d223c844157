//===- geometry/HugePageAdvice.h - Large work blocks in 2 MiB pages -*- C++ -*-===//
//
// Building a search tree over millions of points touches tens of megabytes
// of fresh memory. With 4 KiB pages every page costs a fault when it is
// first written, and on virtual machines a fault can cost more than the work
// done on the page. AdviseHugePages asks the kernel to back a block that has
// not been written yet with transparent 2 MiB pages instead, which cuts the
// faults by a factor of 512. It is advice only: where the kernel has no huge
// pages to give (or does not know the call) nothing changes.
//
// Not part of the public interface.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_GEOMETRY_HUGEPAGEADVICE_H
#define TARNUTILITIES_SRC_GEOMETRY_HUGEPAGEADVICE_H

#include <cstddef>
#include <vector>

namespace ZEL_detail {

/// Advises huge pages for the whole 2 MiB pages inside [begin, begin + bytes);
/// a block that holds none is left alone.
void AdviseHugePages(void* begin, std::size_t bytes) noexcept;

/// Advises huge pages for the unused capacity of a vector, the room that
/// the next push_backs will write.
template <typename T> void AdviseHugePagesForCapacity(std::vector<T>& v) noexcept {
  AdviseHugePages(v.data() + v.size(), (v.capacity() - v.size()) * sizeof(T));
}

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_HUGEPAGEADVICE_H
