// Reading value files: whole, for hvfOpen, whose values are made when asked for; or in one pass
// that holds a few rows at a time, for hvfReadRows. Both inflate a piece at a time and parse
// with the same reader, so they accept exactly the same files.

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>
#include <pt_platform/hvf_rows.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "content_reader.h"
#include "hv_codec.h"
#include "hvf_file.h"

namespace pt::platform {

namespace {

constexpr std::size_t kFirstPiece = std::size_t{1} << 20;

/// Content bytes in a buffer that slides along the content: what is parsed is dropped, and the
/// buffer grows only when one value does not fit it.
class ContentWindow {
public:
    explicit ContentWindow(ContentReader& reader) : _reader(reader), _buffer(kFirstPiece) {}

    const std::uint8_t* data() const { return _buffer.data() + _begin; }
    std::size_t size() const { return _end - _begin; }
    void drop(std::size_t bytes) { _begin += bytes; }
    /// A reader of what the window holds, which knows how much content follows it.
    ValueReader reader() const {
        ValueReader reader(data(), size());
        reader.setBytesBeyond(_reader.contentLeft());
        return reader;
    }
    /// Takes in more content; false at its end or on a failure.
    bool more() {
        if (_begin != 0) {
            std::memmove(_buffer.data(), data(), size());
            _end -= _begin;
            _begin = 0;
        }
        if (_end == _buffer.size()) {
            _buffer.resize(2 * _buffer.size());
        }
        const std::size_t got = _reader.read(_buffer.data() + _end, _buffer.size() - _end);
        _end += got;
        return got != 0;
    }

private:
    ContentReader& _reader;
    std::vector<std::uint8_t> _buffer;
    std::size_t _begin = 0;
    std::size_t _end = 0;
};

/// Runs a parse of what the window holds until it succeeds (then drops what it read), or fails
/// with all the content that could matter in view.
template <typename Parse>
bool parseInWindow(ContentWindow& window, Parse parse) {
    for (;;) {
        ValueReader reader = window.reader();
        if (parse(reader)) {
            window.drop(window.size() - reader.remaining());
            return true;
        }
        if (!reader.ranShort() || !window.more()) {
            return false;
        }
    }
}

/// The rows of a cell variable, each seen as it comes and passed to visit until it answers
/// false; the rest, and a variable of another class, are only checked.
bool streamRows(ContentWindow& window, const std::function<bool(const hvfRow*)>& visit) {
    std::uint32_t elements = 0;
    bool isCell = false;
    if (!parseInWindow(window, [&](ValueReader& reader) {
            const ValueReader start = reader;
            ValueReader::ValueHeader header;
            if (reader.takeNil() || !reader.readHeader(header)) {
                return false;
            }
            isCell = header.classID == hvClassID::Cell;
            if (!isCell) {
                reader = start;
                return reader.skipValue();
            }
            return reader.readCellElements(elements, header);
        })) {
        return false;
    }
    if (!isCell) {
        return true;
    }
    bool visiting = true;
    std::vector<hvfCell> cells;
    hvfRow row;
    for (std::uint32_t i = 0; i < elements; ++i) {
        bool empty = false;
        const bool read = parseInWindow(window, [&](ValueReader& reader) {
            empty = reader.takeNil();
            if (empty) {
                return true;
            }
            if (!visiting) {
                return reader.skipValue(1);
            }
            ValueReader start = reader;
            ValueReader::ValueHeader header;
            if (!reader.readHeader(header)) {
                return false;
            }
            row.classID = header.classID;
            row.count = header.count;
            cells.clear();
            if (header.classID != hvClassID::Cell) {
                reader = start;
                row.cells = {};
                return reader.skipValue(1);
            }
            std::uint32_t count;
            if (!reader.readCellElements(count, header)) {
                return false;
            }
            // Grown cell by cell: the count is judged against content not inflated yet.
            for (std::uint32_t c = 0; c < count; ++c) {
                hvfCell cell;
                if (!reader.readView(cell, 2)) {
                    return false;
                }
                cells.push_back(cell);
            }
            row.cells = cells;
            return true;
        });
        if (!read) {
            return false;
        }
        if (visiting) {
            visiting = visit(empty ? nullptr : &row);
        }
    }
    return true;
}

}  // namespace

hvFile* openForReading(const char* path) {
    ContentReader reader;
    if (!reader.open(path)) {
        return nullptr;
    }
    // The buffer grows with what was inflated, never ahead of it to what the header claims.
    std::vector<unsigned char> content;
    std::size_t filled = 0;
    for (;;) {
        if (filled == content.size()) {
            if (content.size() == reader.contentSize()) {
                unsigned char spare;  // the stated length is in: this shows whether it ends there
                reader.read(&spare, 1);
                break;
            }
            content.resize(static_cast<std::size_t>(std::min<std::uint64_t>(
                reader.contentSize(), std::max(kFirstPiece, 2 * content.size()))));
        }
        const std::size_t got = reader.read(content.data() + filled, content.size() - filled);
        if (got == 0) {
            break;
        }
        filled += got;
    }
    if (!reader.complete()) {
        return nullptr;
    }
    content.resize(filled);
    reader.close();

    auto file = std::make_unique<hvFile>();
    file->content = std::move(content);
    // Every value is checked here; it is made only when it is asked for.
    ValueReader values(file->content.data(), file->content.size());
    while (!values.atEnd()) {
        std::uint32_t parts;
        std::string_view name;
        if (!values.readArray(parts) || parts != 2 || !values.readText(name)) {
            return nullptr;
        }
        const std::size_t offset = file->content.size() - values.remaining();
        if (values.takeNil() || !values.skipValue()) {
            return nullptr;
        }
        const std::size_t size = file->content.size() - values.remaining() - offset;
        if (!file->variables.emplace(std::string(name), hvFile::Variable{offset, size}).second) {
            return nullptr;  // one name, one variable
        }
    }
    return file.release();
}

}  // namespace pt::platform

hvArray* hvfGetVariable(hvFile* file, const char* name) {
    if (!file || file->writing || !name) {
        return nullptr;
    }
    const auto found = file->variables.find(name);
    if (found == file->variables.end()) {
        return nullptr;
    }
    pt::platform::ValueReader reader(file->content.data() + found->second.offset,
                                     found->second.size);
    hvUniqueArray value;
    reader.readValue(value);  // checked when the file was opened
    return value.release();
}

hvfReadResult hvfReadRows(const char* path, const char* rowsName,
                          const std::function<bool(const hvfRow*)>& row,
                          std::span<const char* const> others, std::span<hvUniqueArray> values) {
    using namespace pt::platform;
    ContentReader content;
    if (!path || !rowsName || others.size() != values.size() || !content.open(path)) {
        return hvfReadResult::NotOpened;
    }
    ContentWindow window(content);
    std::set<std::string, std::less<>> seen;
    for (;;) {
        if (window.size() == 0 && !window.more()) {
            break;
        }
        std::string_view name;
        if (!parseInWindow(window, [&name](ValueReader& reader) {
                std::uint32_t parts;
                return reader.readArray(parts) && parts == 2 && reader.readText(name);
            })) {
            return hvfReadResult::NotOpened;
        }
        // The name lies in the window, which moves on as the value is read.
        const auto [at, isNew] = seen.emplace(name);
        if (!isNew) {
            return hvfReadResult::NotOpened;  // one name, one variable
        }
        const std::string& variable = *at;
        const auto wanted = std::find_if(others.begin(), others.end(),
                                         [&](const char* other) { return variable == other; });
        bool ok;
        if (variable == rowsName) {
            ok = streamRows(window, row);
        } else if (wanted != others.end()) {
            hvUniqueArray& value = values[static_cast<std::size_t>(wanted - others.begin())];
            ok = parseInWindow(window, [&value](ValueReader& reader) {
                return !reader.takeNil() && reader.readValue(value);
            });
        } else {
            ok = parseInWindow(window, [](ValueReader& reader) {
                return !reader.takeNil() && reader.skipValue();
            });
        }
        if (!ok) {
            return hvfReadResult::NotOpened;
        }
    }
    if (!content.complete()) {
        return hvfReadResult::NotOpened;
    }
    return content.close() ? hvfReadResult::Read : hvfReadResult::CloseFailed;
}
