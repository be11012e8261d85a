#include "benchmarks/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {
// An atomic one would cost more than the allocation.
thread_local std::uint64_t tAllocations = 0;
}  // namespace

void* operator new(std::size_t size) {
  ++tAllocations;
  if (void* const memory = std::malloc(size != 0 ? size : 1)) {
    return memory;
  }
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace fyn::productionrules::bench {

std::uint64_t allocationCount() {
  return tAllocations;
}

}  // namespace fyn::productionrules::bench
