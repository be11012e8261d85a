#include "tests/geometry/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocations{0};

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* const block = std::malloc(size)) {
    return block;
  }
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}

namespace fyn::productionrules::testing {

std::size_t allocationCount() {
  return allocations;
}

}  // namespace fyn::productionrules::testing
