#include "value_arena.h"

namespace pt::platform {

void* ValueArena::allocate(std::size_t bytes) {
    bytes = (bytes + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) *
            alignof(std::max_align_t);
    if (bytes > kBlockSize) {
        return nullptr;
    }
    if (_blocks.empty() || _used + bytes > kBlockSize) {
        if (!_blocks.empty()) {
            ++_block;
        }
        if (_block == _blocks.size()) {
            _blocks.emplace_back(new std::max_align_t[kBlockSize / sizeof(std::max_align_t)]);
        }
        _used = 0;
    }
    void* storage = reinterpret_cast<char*>(_blocks[_block].get()) + _used;
    _used += bytes;
    return storage;
}

}  // namespace pt::platform
