#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>
#include <pt_platform/hvf_rows.h>

#include <gtest/gtest.h>

#include <zlib.h>
#include <msgpack.hpp>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class ValueFiles : public ::testing::Test {
protected:
    void SetUp() override {
        _folder = std::filesystem::temp_directory_path() / ("pt_hvf_" + std::to_string(getpid()));
        std::filesystem::create_directories(_folder);
    }
    void TearDown() override { std::filesystem::remove_all(_folder); }

    std::string path(const std::string& name) const { return (_folder / name).string(); }

    std::vector<unsigned char> bytesOf(const std::string& file) const {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void writeBytes(const std::string& file, const std::vector<unsigned char>& bytes) const {
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }

    /// A file whose container is sound around the given MessagePack content.
    void writeContainer(const std::string& file, const std::string& content) const {
        uLongf size = compressBound(content.size());
        std::vector<unsigned char> compressed(size);
        compress(compressed.data(), &size, reinterpret_cast<const Bytef*>(content.data()),
                 content.size());
        compressed.resize(size);
        std::vector<unsigned char> bytes = {0x89, 'H',  'V', 'F', '\r', '\n',
                                            0x1A, '\n', 1,   0,   0,    0};
        const auto put = [&bytes](std::uint64_t value, int count) {
            for (int i = 0; i < count; ++i) {
                bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
            }
        };
        put(content.size(), 8);
        put(compressed.size(), 8);
        bytes.insert(bytes.end(), compressed.begin(), compressed.end());
        put(crc32_z(0, reinterpret_cast<const Bytef*>(content.data()), content.size()), 4);
        writeBytes(file, bytes);
    }

    std::filesystem::path _folder;
};

/// A value of every class the host has, nested.
hvUniqueArray everyClass() {
    hvUniqueArray cell(hvCreateCellMatrix(1, 14));
    std::size_t i = 0;
    hvSetCell(cell.get(), i++, hvCreateString("caf\xC3\xA9 \xF0\x9F\x99\x82 \xFF"));
    const std::size_t column[] = {3, 1};
    hvArray* chars = hvCreateCharArray(2, column);
    hvGetChars(chars)[0] = u'a', hvGetChars(chars)[1] = u'b', hvGetChars(chars)[2] = u'\u00DF';
    hvSetCell(cell.get(), i++, chars);
    hvSetCell(cell.get(), i++, hvCreateDoubleScalar(-0.0));
    hvSetCell(cell.get(), i++, hvCreateLogicalScalar(true));
    for (hvClassID cls :
         {hvClassID::Int8, hvClassID::UInt8, hvClassID::Int16, hvClassID::UInt16, hvClassID::Int32,
          hvClassID::UInt32, hvClassID::Int64, hvClassID::UInt64}) {
        const std::size_t dims[] = {2, 1, 2};
        hvArray* numbers = hvCreateNumericArray(3, dims, cls);
        std::memset(hvGetData(numbers), 0xA5, 4 * hvElementSize(cls));
        hvSetCell(cell.get(), i++, numbers);
    }
    hvSetCell(cell.get(), i++, hvCreateCellMatrix(1, 0));  // stays 1-by-0
    const char* names[] = {"first", "second"};
    hvArray* records = hvCreateStructMatrix(2, 1, 2, names);
    hvSetFieldByNumber(records, 1, 0, hvCreateDoubleMatrix(0, 3));
    hvSetFieldByNumber(records, 0, 1, hvCreateString(""));
    hvSetCell(cell.get(), i++, records);
    return cell;
}

TEST_F(ValueFiles, EveryClassComesBackAsItWas) {
    const std::string file = path("all.hvf");
    const hvUniqueArray value = everyClass();
    const hvUniqueArray number(hvCreateDoubleScalar(42));
    hvFile* out = hvfOpen(file.c_str(), "w");
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(hvfPutVariable(out, "everything", value.get()), 0);
    EXPECT_EQ(hvfPutVariable(out, "number", number.get()), 0);
    EXPECT_NE(hvfPutVariable(out, "number", number.get()), 0);  // one name, one variable
    EXPECT_NE(hvfPutVariable(out, "nothing", nullptr), 0);
    EXPECT_EQ(hvfClose(out), 0);

    hvFile* in = hvfOpen(file.c_str(), "r");
    ASSERT_NE(in, nullptr);
    const hvUniqueArray first(hvfGetVariable(in, "everything"));
    const hvUniqueArray again(hvfGetVariable(in, "everything"));
    EXPECT_TRUE(hvIsEqual(first.get(), value.get()));
    EXPECT_TRUE(hvIsEqual(again.get(), value.get()));
    EXPECT_EQ(hvGetM(hvGetCell(first.get(), 12)), 1u);
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvfGetVariable(in, "number")).get()), 42.0);
    EXPECT_EQ(hvfGetVariable(in, "absent"), nullptr);
    EXPECT_NE(hvfPutVariable(in, "x", number.get()), 0);
    EXPECT_EQ(hvfClose(in), 0);

    // An empty file is a file of no variables.
    hvFile* empty = hvfOpen(path("empty.hvf").c_str(), "w");
    EXPECT_EQ(hvfClose(empty), 0);
    hvFile* none = hvfOpen(path("empty.hvf").c_str(), "r");
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(hvfGetVariable(none, "number"), nullptr);
    hvfClose(none);
}

TEST_F(ValueFiles, ValuesLargerThanTheCompressorsBlocks) {
    // Random doubles hardly compress; a long cell of small values packs in many short writes.
    std::mt19937_64 rng(7);
    const hvUniqueArray numbers(hvCreateDoubleMatrix(300000, 1));
    for (std::size_t i = 0; i < 300000; ++i) {
        hvGetDoubles(numbers.get())[i] = std::uniform_real_distribution<double>()(rng);
    }
    const hvUniqueArray cells(hvCreateCellMatrix(1, 100000));
    for (std::size_t i = 0; i < 100000; ++i) {
        hvSetCell(cells.get(), i, hvCreateString("phase " + std::to_string(i)));
    }
    const std::string file = path("large.hvf");
    hvFile* out = hvfOpen(file.c_str(), "w");
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(hvfPutVariable(out, "numbers", numbers.get()), 0);
    EXPECT_EQ(hvfPutVariable(out, "cells", cells.get()), 0);
    EXPECT_EQ(hvfClose(out), 0);

    hvFile* in = hvfOpen(file.c_str(), "r");
    ASSERT_NE(in, nullptr);
    EXPECT_TRUE(hvIsEqual(hvUniqueArray(hvfGetVariable(in, "numbers")).get(), numbers.get()));
    EXPECT_TRUE(hvIsEqual(hvUniqueArray(hvfGetVariable(in, "cells")).get(), cells.get()));
    hvfClose(in);
}

TEST_F(ValueFiles, DamagedAndForeignFilesAreRefusedWhole) {
    const std::string file = path("good.hvf");
    {
        hvFile* out = hvfOpen(file.c_str(), "w");
        const hvUniqueArray value = everyClass();
        hvfPutVariable(out, "v", value.get());
        hvfClose(out);
    }
    const std::vector<unsigned char> good = bytesOf(file);
    const std::string bad = path("bad.hvf");
    for (std::size_t cut = 0; cut < good.size(); ++cut) {
        writeBytes(bad, std::vector<unsigned char>(good.begin(), good.begin() + cut));
        EXPECT_EQ(hvfOpen(bad.c_str(), "r"), nullptr) << "cut at " << cut;
    }
    // A flipped bit is refused, unless it lies in the unused bits that pad the compressed
    // stream's last byte, which change nothing that is read.
    const hvUniqueArray original = everyClass();
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::vector<unsigned char> damaged = good;
            damaged[at] ^= static_cast<unsigned char>(1 << bit);
            writeBytes(bad, damaged);
            if (hvFile* opened = hvfOpen(bad.c_str(), "r")) {
                const hvUniqueArray read(hvfGetVariable(opened, "v"));
                EXPECT_TRUE(hvIsEqual(read.get(), original.get())) << at << ":" << bit;
                hvfClose(opened);
            }
        }
    }
    std::vector<unsigned char> extra = good;
    extra.push_back(0);
    writeBytes(bad, extra);
    EXPECT_EQ(hvfOpen(bad.c_str(), "r"), nullptr);
    writeBytes(bad, std::vector<unsigned char>{'n', 'o', 't', ' ', 'o', 'u', 'r', 's'});
    EXPECT_EQ(hvfOpen(bad.c_str(), "r"), nullptr);
    EXPECT_EQ(hvfOpen(path("missing.hvf").c_str(), "r"), nullptr);
    EXPECT_EQ(hvfOpen((_folder / "no" / "folder.hvf").c_str(), "w"), nullptr);
    EXPECT_EQ(hvfOpen(file.c_str(), "a"), nullptr);
}

TEST_F(ValueFiles, AFileTakesThePlaceOfTheEarlierOneOnlyWhenFinished) {
    const std::string file = path("run.hvf");
    const hvUniqueArray first(hvCreateString("first"));
    hvFile* out = hvfOpen(file.c_str(), "w");
    ASSERT_EQ(hvfPutVariable(out, "v", first.get()), 0);
    ASSERT_EQ(hvfClose(out), 0);
    const std::vector<unsigned char> earlier = bytesOf(file);

    // Discarded, or with rows that do not fit what they opened: the earlier file stays, and
    // nothing else is left in the folder.
    const hvUniqueArray second(hvCreateString("second"));
    out = hvfOpen(file.c_str(), "w");
    ASSERT_EQ(hvfPutVariable(out, "v", second.get()), 0);
    hvfDiscard(out);
    out = hvfOpen(file.c_str(), "w");
    EXPECT_NE(hvfPutRows(out, "rows", 2,
                         [](std::size_t, hvfRowWriter& row) {
                             row.cellRow(1);
                             row.doubleScalar(1);
                             row.doubleScalar(2);
                         }),
              0);
    EXPECT_NE(hvfPutVariable(out, "v", second.get()), 0);  // nothing more after a failed put
    EXPECT_NE(hvfClose(out), 0);
    EXPECT_EQ(bytesOf(file), earlier);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(_folder), {}), 1);

    out = hvfOpen(file.c_str(), "w");
    ASSERT_EQ(hvfPutVariable(out, "v", second.get()), 0);
    ASSERT_EQ(hvfClose(out), 0);
    hvFile* in = hvfOpen(file.c_str(), "r");
    EXPECT_TRUE(hvIsEqual(hvUniqueArray(hvfGetVariable(in, "v")).get(), second.get()));
    hvfClose(in);

    // Only a regular file is read; a pipe without a writer is not waited for.
    ASSERT_EQ(mkfifo(path("pipe.hvf").c_str(), 0600), 0);
    EXPECT_EQ(hvfOpen(path("pipe.hvf").c_str(), "r"), nullptr);
    EXPECT_EQ(hvfOpen(_folder.c_str(), "r"), nullptr);
    EXPECT_EQ(hvfOpen(_folder.c_str(), "w"), nullptr);
}

TEST_F(ValueFiles, HostileContentBehindASoundContainer) {
    const auto pack = [](const std::function<void(msgpack::packer<msgpack::sbuffer>&)>& write) {
        msgpack::sbuffer buffer;
        msgpack::packer<msgpack::sbuffer> packer(buffer);
        write(packer);
        return std::string(buffer.data(), buffer.size());
    };
    const auto variable = [](msgpack::packer<msgpack::sbuffer>& p, const char* name) {
        p.pack_array(2);
        p.pack(std::string(name));
    };
    const struct {
        const char* what;
        std::string content;
    } cases[] = {
        {"huge dimensions with little data", pack([&](auto& p) {
             variable(p, "v");
             p.pack_array(3), p.pack(5), p.pack_array(2), p.pack(std::uint64_t{1} << 40),
                 p.pack(std::uint64_t{1} << 40), p.pack_bin(8), p.pack_bin_body("12345678", 8);
         })},
        {"dimensions whose product overflows", pack([&](auto& p) {
             variable(p, "v");
             p.pack_array(3), p.pack(2), p.pack_array(2), p.pack(std::uint64_t{1} << 40),
                 p.pack(std::uint64_t{1} << 40), p.pack_array(0);
         })},
        {"a cell claiming more elements than bytes", pack([&](auto& p) {
             variable(p, "v");
             p.pack_array(3), p.pack(1), p.pack_array(2), p.pack(1), p.pack(1000000),
                 p.pack_array(1000000);
         })},
        {"nesting deeper than values may", pack([&](auto& p) {
             variable(p, "v");
             for (int i = 0; i < 200; ++i) {
                 p.pack_array(3), p.pack(1), p.pack_array(2), p.pack(1), p.pack(1), p.pack_array(1);
             }
             p.pack_nil();
         })},
        {"a name given twice", pack([&](auto& p) {
             for (int i = 0; i < 2; ++i) {
                 variable(p, "v");
                 p.pack_array(3), p.pack(5), p.pack_array(2), p.pack(1), p.pack(1), p.pack_bin(8),
                     p.pack_bin_body("12345678", 8);
             }
         })},
        {"an unknown class", pack([&](auto& p) {
             variable(p, "v");
             p.pack_array(3), p.pack(99), p.pack_array(2), p.pack(1), p.pack(1), p.pack_nil();
         })},
        {"a structure with a repeated field name", pack([&](auto& p) {
             variable(p, "v");
             p.pack_array(3), p.pack(2), p.pack_array(2), p.pack(1), p.pack(1), p.pack_array(2),
                 p.pack_array(2), p.pack(std::string("a")), p.pack(std::string("a")),
                 p.pack_array(2), p.pack_nil(), p.pack_nil();
         })},
        {"field names that are one name up to a NUL", pack([&](auto& p) {
             variable(p, "v");
             p.pack_array(3), p.pack(2), p.pack_array(2), p.pack(1), p.pack(1), p.pack_array(2),
                 p.pack_array(2), p.pack(std::string("a")), p.pack(std::string("a\0b", 3)),
                 p.pack_array(2), p.pack_nil(), p.pack_nil();
         })},
        {"text shorter than its characters", pack([&](auto& p) {
             variable(p, "v");
             p.pack_array(3), p.pack(4), p.pack_array(2), p.pack(1), p.pack(5),
                 p.pack(std::string("abc"));
         })},
        {"a variable without a value", pack([&](auto& p) {
             variable(p, "v");
             p.pack_nil();
         })},
    };
    for (const auto& c : cases) {
        writeContainer(path("hostile.hvf"), c.content);
        hvFile* file = hvfOpen(path("hostile.hvf").c_str(), "r");
        EXPECT_EQ(file, nullptr) << c.what;
        hvfClose(file);
    }
    // The same container around sound content opens.
    writeContainer(path("sound.hvf"), pack([&](auto& p) {
                       variable(p, "v");
                       p.pack_array(3), p.pack(5), p.pack_array(2), p.pack(1), p.pack(1),
                           p.pack_bin(8), p.pack_bin_body("\0\0\0\0\0\0\xf0?", 8);
                   }));
    hvFile* file = hvfOpen(path("sound.hvf").c_str(), "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvfGetVariable(file, "v")).get()), 1.0);
    hvfClose(file);
}

}  // namespace
