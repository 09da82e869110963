#pragma once

// The host's MD5 digest, fed in pieces.

#include <pt_platform/export.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

/// An MD5 digest under construction: addn feeds bytes, digest gives the sixteen bytes of
/// everything fed since the last digest (or since construction) and starts afresh.
class PT_PLATFORM_API ut_md5ChecksumRec {
public:
    ut_md5ChecksumRec();
    ~ut_md5ChecksumRec();
    ut_md5ChecksumRec(const ut_md5ChecksumRec&) = delete;
    ut_md5ChecksumRec& operator=(const ut_md5ChecksumRec&) = delete;

    void addn(const void* bytes, std::size_t count);
    std::array<std::uint8_t, 16> digest();

private:
    struct Context;
    std::unique_ptr<Context> _context;
};
