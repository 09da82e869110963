#pragma once

// Where a value file being written goes. A regular file (or a name that does not exist yet) is
// written beside itself under a temporary name and takes the file's place only once every byte
// is written, flushed to the disk and closed, so that a save that fails leaves the earlier file
// as it was. A symbolic link is followed to the file it names, and that file keeps its mode
// (and its owner, where this user may give it). Anything else that can be opened for writing,
// such as a device, is written in place, and every write is checked there too. Nothing here touches
// how the process handles signals: a file-size limit or a closed pipe acts on the process as it
// would on any other write.

#include <cstddef>
#include <cstdint>
#include <string>

namespace pt::platform {

class SaveTarget {
public:
    SaveTarget() = default;
    /// Discards whatever was not committed.
    ~SaveTarget();
    SaveTarget(const SaveTarget&) = delete;
    SaveTarget& operator=(const SaveTarget&) = delete;

    /// Opens the file for writing: the temporary file beside a regular file, or the target
    /// itself. False if it cannot be opened, is a folder, or is a regular file that may not be
    /// written.
    bool open(const char* path);
    /// True when the bytes go to a temporary file, which can be written at any position.
    bool replacesFile() const { return !_temporary.empty(); }
    /// Writes all of the bytes at the end of what was written; false if any could not be.
    bool write(const unsigned char* data, std::size_t size);
    /// Writes bytes at a position of the temporary file; false if any could not be.
    bool writeAt(std::uint64_t offset, const unsigned char* data, std::size_t size);
    /// Flushes and closes the file and puts it in the target's place; false if any step fails,
    /// and then nothing of it remains.
    bool commit();
    /// Closes the file and removes the temporary one; the target stays as it was.
    void discard();

private:
    /// Opens a file that is not replaced but written where it is.
    bool openInPlace(const std::string& path);

    int _fd = -1;
    std::uint64_t _written = 0;  // by write, at the end
    std::string _target;
    std::string _temporary;
};

}  // namespace pt::platform
