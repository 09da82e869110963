// The texts of names as a save writes them into rows, looked up once per name: a long run
// repeats a few hundred names millions of times.

#include <performance_tracer/names.h>
#include <performance_tracer/raw_points.h>
#include <performance_tracer/tracer.h>

#include <array>
#include <optional>

#include "name_table.h"

struct PTRowNameTexts::Texts {
    std::array<std::vector<std::optional<std::string>>, PT_TABLE_COUNT> byKind;
    /// For an id that no table holds, whose text is always the same.
    std::string unknown;
};

PTRowNameTexts::PTRowNameTexts() : _texts(std::make_unique<Texts>()) {}

PTRowNameTexts::~PTRowNameTexts() = default;

std::string_view PTRowNameTexts::text(std::uint32_t kind, std::int32_t id) {
    const PTNameTable* table = kind < PT_TABLE_COUNT ? ptTracer()->nameTable(kind) : nullptr;
    if (!table || id < 0 || static_cast<std::size_t>(id) >= table->size()) {
        _texts->unknown = kind == PT_TABLE_PHASE ? ptDisplayPhaseName(ptNameStr(kind, id), false)
                                                 : ptNameStr(kind, id);
        return _texts->unknown;
    }
    auto& texts = _texts->byKind[kind];
    if (texts.size() <= static_cast<std::size_t>(id)) {
        texts.resize(table->size());
    }
    std::optional<std::string>& text = texts[static_cast<std::size_t>(id)];
    if (!text) {
        text = kind == PT_TABLE_PHASE ? ptDisplayPhaseName(ptNameStr(kind, id), false)
                                      : ptNameStr(kind, id);
    }
    return *text;
}
