//===- geometry/HugePageAdvice.h - Large work blocks in 2 MiB pages -*- C++ -*-===//
//
// Building a search tree over millions of points touches tens of megabytes
// of fresh memory. With 4 KiB pages every page costs a fault when it is
// first written, and on virtual machines a fault can cost more than the work
// done on the page. Two helpers ask the kernel for transparent 2 MiB pages
// instead, which cuts the faults by a factor of up to 512:
//
// - AdviseHugePages for a block that exists but has not been written yet
//   (the unused capacity of the tree's own arrays);
// - WorkBlock, the build's work space: a private mapping of its own, so
//   that it neither grows nor fragments the allocator's heap and goes back to
//   the system as soon as the build ends.
//
// Both are advice: where the kernel has no huge pages to give, memory comes
// in ordinary pages and nothing else changes. Under AddressSanitizer and
// ThreadSanitizer the work block comes from operator new instead, so that
// the sanitizers see every access to it.
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

/// An uninitialised block of at least `bytes` bytes, aligned to 64 bytes,
/// freed by the destructor. Throws std::bad_alloc when there is no memory.
class WorkBlock {
public:
  explicit WorkBlock(std::size_t bytes);
  ~WorkBlock();
  WorkBlock(const WorkBlock&) = delete;
  WorkBlock& operator=(const WorkBlock&) = delete;

  void* data() const { return data_; }

private:
  void* mapping_ = nullptr; ///< what to give back
  std::size_t mappingBytes_ = 0;
  void* data_ = nullptr;
};

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_HUGEPAGEADVICE_H
