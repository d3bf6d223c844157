//===- geometry/HugePageAdvice.h - Huge pages for fresh memory --*- C++ -*-===//
//
// Building a search tree over millions of points touches tens of megabytes
// of fresh memory. With 4 KiB pages every page costs a fault when it is
// first written, and on virtual machines a fault can cost more than the work
// done on the page. AdviseHugePages asks the kernel for transparent 2 MiB pages
// instead for a block that exists but has not been written yet (the unused
// capacity of the tree's own arrays), which cuts the faults by a factor of
// up to 512. The build's work space is a TarnSystemDetail::LargeBuffer,
// which maps large blocks in huge pages itself.
//
// This is advice: where the kernel has no huge pages to give, memory comes
// in ordinary pages and nothing else changes.
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
