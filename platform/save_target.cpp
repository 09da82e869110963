#include "save_target.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pt::platform {

namespace {

/// Links followed before a name counts as a loop, as the kernel counts them.
constexpr int kMaxLinks = 40;

/// The folder part of a path, with its slash ("" for a name in the working folder).
std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

/// The file that a path names once its symbolic links are followed; empty for a loop.
std::string followLinks(std::string path) {
    for (int links = 0;; ++links) {
        struct stat st;
        if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) {
            return path;  // a file, or a name to create (whatever else is wrong shows at open)
        }
        if (links == kMaxLinks) {
            return {};
        }
        std::vector<char> link(static_cast<std::size_t>(st.st_size) + 256);
        const ssize_t length = ::readlink(path.c_str(), link.data(), link.size());
        if (length <= 0 || static_cast<std::size_t>(length) == link.size()) {
            return {};
        }
        const std::string next(link.data(), static_cast<std::size_t>(length));
        path = next.front() == '/' ? next : folderOf(path) + next;
    }
}

/// A new file beside the target, for it alone; -1 if none can be made.
int createTemporary(const std::string& target, std::string& name) {
    static std::atomic<unsigned> counter{0};
    const std::string folder = folderOf(target);
    // Long names are cut so that the temporary name stays within the folder's limit.
    const std::string base = target.substr(folder.size()).substr(0, 200);
    for (int attempt = 0; attempt < 100; ++attempt) {
        char suffix[48];
        const auto clock = std::chrono::steady_clock::now().time_since_epoch().count();
        std::snprintf(suffix, sizeof suffix, ".%x%x%04x~", static_cast<unsigned>(::getpid()),
                      counter++, static_cast<unsigned>(clock) & 0xFFFF);
        name = folder + "." + base + suffix;
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) {
            return fd;
        }
    }
    return -1;
}

}  // namespace

SaveTarget::~SaveTarget() { discard(); }

bool SaveTarget::open(const char* path) {
    discard();
    const std::string named(path);
    if (named.empty() || named.back() == '/') {
        return false;
    }
    struct stat st;
    const bool exists = ::stat(named.c_str(), &st) == 0;
    if (exists && S_ISDIR(st.st_mode)) {
        return false;
    }
    if (exists && !S_ISREG(st.st_mode)) {
        return openInPlace(named);
    }
    // A regular file, or a name to create: the file that its links lead to is replaced.
    _target = followLinks(named);
    if (_target.empty()) {
        return false;
    }
    struct stat found;
    if (exists && (::stat(_target.c_str(), &found) != 0 || found.st_ino != st.st_ino ||
                   found.st_dev != st.st_dev)) {
        // A link that names no path, such as one to an open file of a process: the file can
        // only be written where it is.
        return openInPlace(named);
    }
    // A file that may not be written is not replaced either.
    if (exists && ::access(_target.c_str(), W_OK) != 0) {
        return false;
    }
    _fd = createTemporary(_target, _temporary);
    if (_fd < 0) {
        _temporary.clear();
        return false;
    }
    if (exists) {
        // The earlier file's owner and mode, as far as this user may give them.
        if (::fchown(_fd, st.st_uid, st.st_gid) != 0) {
            st.st_mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
        }
        if (::fchmod(_fd, st.st_mode & 07777) != 0) {
            ::fchmod(_fd, st.st_mode & 0777);
        }
    }
    return true;
}

bool SaveTarget::openInPlace(const std::string& path) {
    // Opening does not wait for a reader of a pipe that has none.
    _fd = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (_fd < 0) {
        return false;
    }
    const int flags = ::fcntl(_fd, F_GETFL);
    if (flags < 0 || ::fcntl(_fd, F_SETFL, flags & ~O_NONBLOCK) != 0) {
        discard();
        return false;
    }
    return true;
}

bool SaveTarget::write(const unsigned char* data, std::size_t size) {
    while (size != 0) {
        const ssize_t written = ::write(_fd, data, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        data += written;
        size -= static_cast<std::size_t>(written);
        _written += static_cast<std::uint64_t>(written);
    }
    return true;
}

bool SaveTarget::writeAt(std::uint64_t offset, const unsigned char* data, std::size_t size) {
    while (size != 0) {
        const ssize_t written = ::pwrite(_fd, data, size, static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        data += written;
        offset += static_cast<std::uint64_t>(written);
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool SaveTarget::commit() {
    if (_fd < 0) {
        return false;
    }
    const bool replacing = replacesFile();
    // A regular file written in place loses what lay past the new content only now.
    struct stat st;
    bool ok = replacing || ::fstat(_fd, &st) != 0 || !S_ISREG(st.st_mode) ||
              ::ftruncate(_fd, static_cast<off_t>(_written)) == 0;
    // A file system that is full, or out of quota, may say so only when the data are flushed,
    // or only at the close.
    ok = (!replacing || ::fsync(_fd) == 0) && ok;
    ok = ::close(_fd) == 0 && ok;
    _fd = -1;
    if (!replacing) {
        return ok;
    }
    if (!ok || ::rename(_temporary.c_str(), _target.c_str()) != 0) {
        discard();
        return false;
    }
    _temporary.clear();
    // The new name lasts only once its folder is on the disk too. The file is in place either
    // way, so a folder that cannot be flushed fails nothing.
    const std::string folder = folderOf(_target);
    if (const int dir = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
        dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

void SaveTarget::discard() {
    _written = 0;
    if (_fd >= 0) {
        ::close(_fd);
        _fd = -1;
    }
    if (!_temporary.empty()) {
        ::unlink(_temporary.c_str());
        _temporary.clear();
    }
}

}  // namespace pt::platform
