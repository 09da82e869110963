#include "file_rows.h"

#include <algorithm>

#include <boost/make_shared.hpp>

namespace performance_tracer {

namespace {

/// The cells of a row of a file, read by the rules of the values they stand for.
class FileRowCells final : public PTRowCells {
public:
    FileRowCells(const hvfRow& row, FileRowReader& names) : _row(row), _names(names) {}

    bool isCharVector(std::size_t i) const override {
        const hvfCell* c = cell(i);
        return c && c->classID == hvClassID::Char && c->isVector;
    }
    bool hasText(std::size_t i, std::string_view text) const override {
        return hvfCellText(cell(i), _scratch) == text;
    }
    std::int32_t nameID(std::uint32_t kind, std::size_t i) override {
        return _names.heldID(kind, hvfCellText(cell(i), _scratch));
    }
    std::int32_t int32(std::size_t i) const override { return hvfCellInt32Bits(cell(i)); }
    double figure(std::size_t i) const override {
        const hvfCell* c = cell(i);
        return c && c->count == 1 ? hvfCellScalar(c) : 0.0;
    }
    bool flag(std::size_t i) const override { return hvfCellIsTrue(cell(i)); }

private:
    const hvfCell* cell(std::size_t i) const {
        return i < _row.cells.size() ? &_row.cells[i] : nullptr;
    }

    const hvfRow& _row;
    FileRowReader& _names;
    mutable std::string _scratch;
};

void giveID(std::int32_t& id, const std::vector<std::int32_t>& ids) {
    if (id <= -2) {
        id = ids[static_cast<std::size_t>(-2 - id)];
    }
}

}  // namespace

FileRowReader::FileRowReader(PTRawDataVector& points) : _points(points), _first(points.size()) {}

std::int32_t FileRowReader::heldID(std::uint32_t kind, std::string_view name) {
    Names& names = _names[kind];
    std::size_t at = 0;
    while (at < names.recentCount && names.recent[at].name != name) {
        ++at;
    }
    Recent found;
    if (at < names.recentCount) {
        found = names.recent[at];
    } else {
        auto known = names.ids.find(name);
        if (known == names.ids.end()) {
            const auto id =
                static_cast<std::int32_t>(-2 - static_cast<std::int64_t>(names.inOrder.size()));
            known = names.ids.emplace(std::string(name), id).first;
            names.inOrder.push_back(&known->first);
        }
        found = {known->first, known->second};  // the map's key, which stays where it is
        at = std::min(names.recentCount, kRecent - 1);
        names.recentCount = std::min(names.recentCount + 1, kRecent);
    }
    // The latest to the front.
    std::move_backward(names.recent.begin(), names.recent.begin() + at,
                       names.recent.begin() + at + 1);
    names.recent[0] = found;
    return found.id;
}

bool FileRowReader::append(const hvfRow* row) {
    if (!row) {
        return false;
    }
    FileRowCells cells(*row, *this);
    switch (row->count) {
        case 18:
            _points.push_back(boost::make_shared<PTKestruneDataPoint>(cells));
            _classes.push_back(1);
            break;
        case 20:
            _points.push_back(boost::make_shared<PTYlvaneDataPoint>(cells));
            _classes.push_back(2);
            break;
        default:
            _points.push_back(boost::make_shared<PTOrviaDataPoint>(cells));
            _classes.push_back(0);
            break;
    }
    return true;
}

void FileRowReader::commit() {
    std::array<std::vector<std::int32_t>, PT_TABLE_COUNT> ids;
    for (std::uint32_t kind = 0; kind < PT_TABLE_COUNT; ++kind) {
        for (const std::string* name : _names[kind].inOrder) {
            ids[kind].push_back(static_cast<std::int32_t>(ptNameID(kind, *name)));
        }
    }
    for (std::size_t i = 0; i < _classes.size(); ++i) {
        PTOrviaDataPoint& point = *_points[_first + i];
        giveID(point._phaseID, ids[PT_TABLE_PHASE]);
        giveID(point._groupingID, ids[PT_TABLE_GROUPING]);
        giveID(point._statisticsTypeID, ids[PT_TABLE_STATISTICS_TYPE]);
        if (_classes[i] >= 1) {
            auto& modelPoint = static_cast<PTKestruneDataPoint&>(point);
            giveID(modelPoint._modelID, ids[PT_TABLE_MODEL]);
            giveID(modelPoint._targetID, ids[PT_TABLE_TARGET]);
        }
        if (_classes[i] == 2) {
            auto& chartPoint = static_cast<PTYlvaneDataPoint&>(point);
            giveID(chartPoint._machineID, ids[PT_TABLE_MACHINE]);
            giveID(chartPoint._chartID, ids[PT_TABLE_CHART]);
        }
    }
}

void FileRowReader::drop() {
    _points.resize(_first);
    _classes.clear();
}

}  // namespace performance_tracer
