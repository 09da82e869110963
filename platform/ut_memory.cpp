#include <pt_platform/ut.h>

#include <cstdlib>
#include <new>

void* utMalloc(std::size_t size) {
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (!memory) {
        throw std::bad_alloc();
    }
    return memory;
}

void* utCalloc(std::size_t count, std::size_t size) {
    void* memory = std::calloc(count == 0 ? 1 : count, size == 0 ? 1 : size);
    if (!memory) {
        throw std::bad_alloc();
    }
    return memory;
}

void utFree(void* memory) { std::free(memory); }
