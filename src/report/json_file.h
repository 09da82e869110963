#pragma once

// A JSON text written to a file through a buffer of fixed size, so that the memory a writer
// takes does not grow with its output. Unlike the report pages, every write and the close are
// checked.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace pt::report {

/// Where a JSON text goes: a file of its own, or inside a page's script element, where "<",
/// ">", "&", DEL and the line separators U+2028 and U+2029 are escaped too.
enum class EPTJsonUse { File, Script };

/// A text as a JSON string, quotes included: the quote mark, the backslash and the control
/// characters escaped, and every byte that is not part of well-formed UTF-8 replaced by U+FFFD,
/// so that any name from data gives text that every JSON reader takes.
std::string jsonString(std::string_view text, EPTJsonUse use = EPTJsonUse::File);
/// The same, appended to out.
void appendJsonString(std::string& out, std::string_view text, EPTJsonUse use = EPTJsonUse::File);

class JsonFile {
public:
    /// Opens the file for writing, replacing what it held.
    explicit JsonFile(const std::string& path);
    ~JsonFile();
    JsonFile(const JsonFile&) = delete;
    JsonFile& operator=(const JsonFile&) = delete;

    bool isOpen() const { return _file != nullptr; }
    /// Text that is JSON already: punctuation, keys, strings made by jsonString.
    JsonFile& raw(std::string_view text);
    JsonFile& integer(std::int64_t value);
    /// The shortest decimal form that reads back as the same double; null for a value that is
    /// not finite, which JSON cannot hold.
    JsonFile& number(double value);
    /// Writes what is buffered and closes the file; true if every write and the close succeeded.
    bool close();

private:
    void put(const char* data, std::size_t size);
    void flush();

    std::FILE* _file;
    std::unique_ptr<char[]> _buffer;
    std::size_t _used = 0;
    bool _failed = false;
};

}  // namespace pt::report
