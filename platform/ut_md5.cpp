#include <pt_platform/ut_md5.h>

#include <md5.h>

struct ut_md5ChecksumRec::Context {
    MD5_CTX md5;
};

ut_md5ChecksumRec::ut_md5ChecksumRec() : _context(std::make_unique<Context>()) {
    MD5Init(&_context->md5);
}

ut_md5ChecksumRec::~ut_md5ChecksumRec() = default;

void ut_md5ChecksumRec::addn(const void* bytes, std::size_t count) {
    MD5Update(&_context->md5, static_cast<const std::uint8_t*>(bytes), count);
}

std::array<std::uint8_t, 16> ut_md5ChecksumRec::digest() {
    std::array<std::uint8_t, 16> result{};
    MD5Final(result.data(), &_context->md5);
    MD5Init(&_context->md5);
    return result;
}
