#pragma once

// Storage for values that live a moment and go together, such as the rows of a file read one
// at a time: a bump allocator whose blocks are reused after each reset. A value made in it is
// destroyed like any other (its elements and fields are released), but its storage comes back
// only with the reset, so a reset must wait until all its values are destroyed.

#include <cstddef>
#include <memory>
#include <vector>

namespace pt::platform {

class ValueArena {
public:
    /// Storage aligned for a value, or null for a request larger than a block.
    void* allocate(std::size_t bytes);
    void reset() {
        _block = 0;
        _used = 0;
    }

private:
    static constexpr std::size_t kBlockSize = 64 * 1024;

    std::vector<std::unique_ptr<std::max_align_t[]>> _blocks;
    std::size_t _block = 0;
    std::size_t _used = 0;
};

}  // namespace pt::platform
