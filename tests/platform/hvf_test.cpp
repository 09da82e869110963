#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>
#include <pt_platform/hvf_rows.h>

#include <gtest/gtest.h>

#include <zlib.h>
#include <msgpack.hpp>

#include <algorithm>
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

    /// Writes the variables into a new file; true when every put and the close succeed.
    static bool save(const std::string& file,
                     std::initializer_list<std::pair<const char*, const hvArray*>> variables) {
        hvFile* out = hvfOpen(file.c_str(), "w");
        bool ok = out != nullptr;
        for (const auto& [name, value] : variables) {
            ok = ok && hvfPutVariable(out, name, value) == 0;
        }
        return out && hvfClose(out) == 0 && ok;
    }
    /// The variable as read from the file; null when the file or the variable is refused.
    static hvUniqueArray load(const std::string& file, const char* name) {
        hvFile* in = hvfOpen(file.c_str(), "r");
        hvUniqueArray value(in ? hvfGetVariable(in, name) : nullptr);
        hvfClose(in);
        return value;
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
    // One name, one variable; no variable without a value.
    EXPECT_EQ((std::vector{hvfPutVariable(out, "everything", value.get()) == 0,
                           hvfPutVariable(out, "number", number.get()) == 0,
                           hvfPutVariable(out, "number", number.get()) == 0,
                           hvfPutVariable(out, "nothing", nullptr) == 0, hvfClose(out) == 0}),
              (std::vector{true, true, false, false, true}));

    hvFile* in = hvfOpen(file.c_str(), "r");
    ASSERT_NE(in, nullptr);
    const hvUniqueArray first(hvfGetVariable(in, "everything"));
    const hvUniqueArray again(hvfGetVariable(in, "everything"));
    EXPECT_TRUE(hvIsEqual(first.get(), value.get()) && hvIsEqual(again.get(), value.get()));
    EXPECT_EQ(hvGetM(hvGetCell(first.get(), 12)), 1u);
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvfGetVariable(in, "number")).get()), 42.0);
    EXPECT_EQ(hvfGetVariable(in, "absent"), nullptr);
    EXPECT_NE(hvfPutVariable(in, "x", number.get()), 0);
    EXPECT_EQ(hvfClose(in), 0);

    // An empty file is a file of no variables: it opens, and has none.
    ASSERT_TRUE(save(path("empty.hvf"), {}));
    hvFile* none = hvfOpen(path("empty.hvf").c_str(), "r");
    EXPECT_NE(none, nullptr);
    EXPECT_EQ(hvfGetVariable(none, "number"), nullptr);
    hvfClose(none);

    // Values larger than the compressor's blocks: random doubles hardly compress; a long cell of
    // small values packs in many short writes.
    std::mt19937_64 rng(7);
    const hvUniqueArray numbers(hvCreateDoubleMatrix(300000, 1));
    for (std::size_t i = 0; i < 300000; ++i) {
        hvGetDoubles(numbers.get())[i] = std::uniform_real_distribution<double>()(rng);
    }
    const hvUniqueArray cells(hvCreateCellMatrix(1, 100000));
    for (std::size_t i = 0; i < 100000; ++i) {
        hvSetCell(cells.get(), i, hvCreateString("phase " + std::to_string(i)));
    }
    ASSERT_TRUE(save(path("large.hvf"), {{"numbers", numbers.get()}, {"cells", cells.get()}}));
    EXPECT_TRUE(hvIsEqual(load(path("large.hvf"), "numbers").get(), numbers.get()));
    EXPECT_TRUE(hvIsEqual(load(path("large.hvf"), "cells").get(), cells.get()));
}

TEST_F(ValueFiles, DamagedAndForeignFilesAreRefusedWhole) {
    const std::string file = path("good.hvf");
    const hvUniqueArray original = everyClass();
    ASSERT_TRUE(save(file, {{"v", original.get()}}));
    const std::vector<unsigned char> good = bytesOf(file);
    const std::string bad = path("bad.hvf");
    const auto opened = [&](const std::vector<unsigned char>& bytes) {
        writeBytes(bad, bytes);
        return hvfOpen(bad.c_str(), "r");
    };
    for (std::size_t cut = 0; cut <= good.size() + 1; ++cut) {  // cut short, or one byte over
        std::vector<unsigned char> bytes(good.begin(), good.begin() + std::min(cut, good.size()));
        bytes.resize(cut);
        EXPECT_EQ(cut == good.size() ? nullptr : opened(bytes), nullptr) << "length " << cut;
    }
    // A flipped bit is refused, unless it lies in the unused bits that pad the compressed
    // stream's last byte, which change nothing that is read.
    for (std::size_t at = 0; at < good.size() * 8; ++at) {
        std::vector<unsigned char> damaged = good;
        damaged[at / 8] ^= static_cast<unsigned char>(1 << (at % 8));
        if (hvFile* read = opened(damaged)) {
            EXPECT_TRUE(hvIsEqual(hvUniqueArray(hvfGetVariable(read, "v")).get(), original.get()))
                << "bit " << at;
            hvfClose(read);
        }
    }
    EXPECT_EQ(opened({'n', 'o', 't', ' ', 'o', 'u', 'r', 's'}), nullptr);
    EXPECT_EQ(hvfOpen(path("missing.hvf").c_str(), "r"), nullptr);
    EXPECT_EQ(hvfOpen((_folder / "no" / "folder.hvf").c_str(), "w"), nullptr);
    EXPECT_EQ(hvfOpen(file.c_str(), "a"), nullptr);
}

TEST_F(ValueFiles, AFileTakesThePlaceOfTheEarlierOneOnlyWhenFinished) {
    const std::string file = path("run.hvf");
    const hvUniqueArray first(hvCreateString("first"));
    const hvUniqueArray second(hvCreateString("second"));
    ASSERT_TRUE(save(file, {{"v", first.get()}}));
    const std::vector<unsigned char> earlier = bytesOf(file);

    // Discarded, or with rows that do not fit what they opened: the earlier file stays, and
    // nothing else is left in the folder.
    hvFile* out = hvfOpen(file.c_str(), "w");
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

    ASSERT_TRUE(save(file, {{"v", second.get()}}));
    EXPECT_TRUE(hvIsEqual(load(file, "v").get(), second.get()));

    // Only a regular file is read; a pipe without a writer is not waited for.
    ASSERT_EQ(mkfifo(path("pipe.hvf").c_str(), 0600), 0);
    EXPECT_EQ(hvfOpen(path("pipe.hvf").c_str(), "r"), nullptr);
    EXPECT_EQ(hvfOpen(_folder.c_str(), "r"), nullptr);
    EXPECT_EQ(hvfOpen(_folder.c_str(), "w"), nullptr);
}

TEST_F(ValueFiles, HostileContentBehindASoundContainer) {
    using Packer = msgpack::packer<msgpack::sbuffer>;
    const auto pack = [](const std::function<void(Packer&)>& write) {
        msgpack::sbuffer buffer;
        Packer packer(buffer);
        write(packer);
        return std::string(buffer.data(), buffer.size());
    };
    const auto name = [](Packer& p) { p.pack_array(2), p.pack(std::string("v")); };
    // A value's class and size, before its content.
    const auto value = [](Packer& p, int cls, std::uint64_t m, std::uint64_t n) {
        p.pack_array(3), p.pack(cls), p.pack_array(2), p.pack(m), p.pack(n);
    };
    const auto variable = [&](Packer& p, int cls, std::uint64_t m, std::uint64_t n) {
        name(p), value(p, cls, m, n);
    };
    const auto fields = [&](Packer& p, const std::string& second) {
        variable(p, 2, 1, 1), p.pack_array(2), p.pack_array(2), p.pack(std::string("a")),
            p.pack(second), p.pack_array(2), p.pack_nil(), p.pack_nil();
    };
    constexpr std::uint64_t kHuge = std::uint64_t{1} << 40;
    const struct {
        const char* what;
        std::string content;
    } cases[] = {
        {"huge dimensions with little data", pack([&](Packer& p) {
             variable(p, 5, kHuge, kHuge), p.pack_bin(8), p.pack_bin_body("12345678", 8);
         })},
        {"dimensions whose product overflows",
         pack([&](Packer& p) { variable(p, 2, kHuge, kHuge), p.pack_array(0); })},
        {"a cell claiming more elements than bytes",
         pack([&](Packer& p) { variable(p, 1, 1, 1000000), p.pack_array(1000000); })},
        {"nesting deeper than values may", pack([&](Packer& p) {
             name(p);
             for (int i = 0; i < 200; ++i) {
                 value(p, 1, 1, 1), p.pack_array(1);
             }
             p.pack_nil();
         })},
        {"a name given twice", pack([&](Packer& p) {
             for (int i = 0; i < 2; ++i) {
                 variable(p, 5, 1, 1), p.pack_bin(8), p.pack_bin_body("12345678", 8);
             }
         })},
        {"an unknown class", pack([&](Packer& p) { variable(p, 99, 1, 1), p.pack_nil(); })},
        {"a structure with a repeated field name", pack([&](Packer& p) { fields(p, "a"); })},
        {"field names that are one name up to a NUL",
         pack([&](Packer& p) { fields(p, std::string("a\0b", 3)); })},
        {"text shorter than its characters",
         pack([&](Packer& p) { variable(p, 4, 1, 5), p.pack(std::string("abc")); })},
        {"a variable without a value", pack([&](Packer& p) { name(p), p.pack_nil(); })},
    };
    for (const auto& c : cases) {
        writeContainer(path("hostile.hvf"), c.content);
        hvFile* file = hvfOpen(path("hostile.hvf").c_str(), "r");
        EXPECT_EQ(file, nullptr) << c.what;
        hvfClose(file);
    }
    // The same container around sound content opens.
    writeContainer(path("sound.hvf"), pack([&](Packer& p) {
                       variable(p, 5, 1, 1), p.pack_bin(8), p.pack_bin_body("\0\0\0\0\0\0\xf0?", 8);
                   }));
    EXPECT_EQ(hvGetScalar(load(path("sound.hvf"), "v").get()), 1.0);
}

}  // namespace
