#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <algorithm>

#include <boost/make_shared.hpp>

#include "name_table.h"

namespace {

PerformanceTracer& tracer() { return *ptTracer(); }

std::int32_t idOf(std::uint32_t kind, const std::string& name) {
    return static_cast<std::int32_t>(tracer().nameToID(kind, name, false));
}

/// A point of the block-diagram or state-chart tool, or null for a host-language point. The
/// class is checked as well as _pointType, as a malformed row can make the two disagree.
const PTKestruneDataPoint* asModelPoint(const PTOrviaDataPoint& point) {
    return point._pointType != 0 ? dynamic_cast<const PTKestruneDataPoint*>(&point) : nullptr;
}

/// A reader's copy, made by the copy constructor of the class that _pointType names, so that a
/// wider point whose type says it is narrower (only a row of an unknown version makes one)
/// is copied as the narrower class. A point whose class lacks the fields of its type, or whose
/// type is none of 0, 1, 2 (both only from a malformed file), is copied as its own class.
boost::shared_ptr<PTOrviaDataPoint> copyByPointType(const PTOrviaDataPoint& point) {
    switch (point._pointType) {
        case 0: return boost::make_shared<PTOrviaDataPoint>(point);
        case 1:
            if (const auto* modelPoint = dynamic_cast<const PTKestruneDataPoint*>(&point)) {
                return boost::make_shared<PTKestruneDataPoint>(*modelPoint);
            }
            break;
        case 2:
            if (const auto* chartPoint = dynamic_cast<const PTYlvaneDataPoint*>(&point)) {
                return boost::make_shared<PTYlvaneDataPoint>(*chartPoint);
            }
            break;
        default: break;
    }
    return point.clone();
}

/// Erases the matching points in place, keeping the order of the rest.
template <typename Matches>
void eraseRawPoints(Matches matches) {
    PTRawDataVector* raw = tracer()._rawData.get();
    if (!raw || raw->empty()) {
        return;
    }
    std::erase_if(*raw, [&](const boost::shared_ptr<PTOrviaDataPoint>& point) {
        return point && matches(*point);
    });
}

void clearStatisticsTypes() {
    if (auto& types = tracer()._modelStatisticsTypes) {
        types->clear();
    }
}

}  // namespace

std::unique_ptr<PTRawDataVector> PerformanceTracer::snapshotRawData() const {
    if (!_rawData) {
        return nullptr;
    }
    auto copy = std::make_unique<PTRawDataVector>();
    copy->reserve(_rawData->size());
    for (const auto& point : *_rawData) {
        if (point) {
            copy->push_back(copyByPointType(*point));
        }
    }
    return copy;
}

std::unique_ptr<PTRawDataVector> PerformanceTracer::rawDataForGrouping(
    const std::string& grouping) {
    const auto id = static_cast<std::int32_t>(ptNameID(PT_TABLE_GROUPING, grouping));
    if (!_rawData) {
        return nullptr;
    }
    auto selected = std::make_unique<PTRawDataVector>();
    std::copy_if(_rawData->begin(), _rawData->end(), std::back_inserter(*selected),
                 [id](const auto& point) { return point && point->_groupingID == id; });
    return selected;
}

void ptClearRawData() {
    PerformanceTracer& t = tracer();
    if (t._rawData) {
        t._rawData->clear();
    }
    clearStatisticsTypes();
    // The grouping table stays, so that grouping ids held outside the tracer remain valid.
    for (std::uint32_t kind : {PT_TABLE_PHASE, PT_TABLE_STATISTICS_TYPE, PT_TABLE_MODEL,
                               PT_TABLE_TARGET, PT_TABLE_MACHINE, PT_TABLE_CHART}) {
        if (PTNameTable* table = t.nameTable(kind)) {
            table->clear();
        }
    }
}

void ptClearRawData(const std::string& grouping, const std::string& model) {
    const std::int32_t groupingID = idOf(PT_TABLE_GROUPING, grouping);
    const std::int32_t modelID = idOf(PT_TABLE_MODEL, model);
    eraseRawPoints([&](const PTOrviaDataPoint& point) {
        const PTKestruneDataPoint* modelPoint = asModelPoint(point);
        return modelPoint && point._groupingID == groupingID && modelPoint->_modelID == modelID;
    });
    // Settled behaviour: this form forgets the statistics type of every model, the form with
    // a target forgets none.
    clearStatisticsTypes();
}

void ptClearRawData(const std::string& grouping, const std::string& model,
                    const std::string& target) {
    const std::int32_t groupingID = idOf(PT_TABLE_GROUPING, grouping);
    const std::int32_t modelID = idOf(PT_TABLE_MODEL, model);
    const std::int32_t targetID = idOf(PT_TABLE_TARGET, target);
    eraseRawPoints([&](const PTOrviaDataPoint& point) {
        const PTKestruneDataPoint* modelPoint = asModelPoint(point);
        return modelPoint && point._groupingID == groupingID && modelPoint->_modelID == modelID &&
               modelPoint->_targetID == targetID;
    });
}

void ptClearRawGroupingData(const std::string& grouping) {
    const std::int32_t groupingID = idOf(PT_TABLE_GROUPING, grouping);
    eraseRawPoints([&](const PTOrviaDataPoint& point) { return point._groupingID == groupingID; });
}

void ptClearRawModelData(const std::string& model) {
    const std::int32_t modelID = idOf(PT_TABLE_MODEL, model);
    eraseRawPoints([&](const PTOrviaDataPoint& point) {
        const PTKestruneDataPoint* modelPoint = asModelPoint(point);
        return modelPoint && modelPoint->_modelID == modelID;
    });
}

void ptSetStatisticsTypeForModel(const std::string& model, const std::string& statisticsType) {
    auto& types = tracer()._modelStatisticsTypes;
    if (!types) {
        types = std::make_unique<PerformanceTracer::StatisticsTypeMap>();
    }
    (*types)[model] = statisticsType;
}
