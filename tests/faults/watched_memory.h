// The watch over the library's allocations: by the linker's --wrap natively, through the import
// table where the library file itself is under test.
#ifndef QBSUPPORT_TESTS_FAULTS_WATCHED_MEMORY_H
#define QBSUPPORT_TESTS_FAULTS_WATCHED_MEMORY_H

#include <cstddef>

namespace faults {

// The library's malloc and free come here first, and so does calloc: a compiler makes one of a
// malloc whose block is zeroed. The stand-in platform and the tests use operator new, which does
// not.
void* RealMalloc(std::size_t size) asm("__real_malloc");
void* RealCalloc(std::size_t count, std::size_t size) asm("__real_calloc");
void RealFree(void* block) asm("__real_free");
void* WatchedMalloc(std::size_t size) asm("__wrap_malloc");
void* WatchedCalloc(std::size_t count, std::size_t size) asm("__wrap_calloc");
void WatchedFree(void* block) asm("__wrap_free");

}  // namespace faults

#endif
