#include <performance_tracer/raw_points.h>

#include <boost/make_shared.hpp>

namespace {

template <typename Record>
boost::shared_ptr<Record> ownCopy(const boost::shared_ptr<Record>& record) {
    return record ? boost::make_shared<Record>(*record) : boost::make_shared<Record>();
}

}  // namespace

PTOrviaDataPoint::PTOrviaDataPoint() : PTOrviaDataPoint(0) {}

PTOrviaDataPoint::PTOrviaDataPoint(std::int32_t pointType)
    : _pointType(pointType),
      _basicMem(boost::make_shared<pt::BasicMemStats>()),
      _detailedMem(boost::make_shared<pt::DetailedMemStats>()) {}

PTOrviaDataPoint::PTOrviaDataPoint(RowStart)
    : _pointType(0), _groupingID(0), _phaseID(0), _statisticsTypeID(0) {}

PTOrviaDataPoint::PTOrviaDataPoint(std::int32_t pointType, RowStart)
    : _pointType(pointType), _detailedMem(boost::make_shared<pt::DetailedMemStats>()) {}

PTOrviaDataPoint::PTOrviaDataPoint(const PTOrviaDataPoint& other)
    : _pointType(other._pointType),
      _groupingID(other._groupingID),
      _phaseID(other._phaseID),
      _statisticsTypeID(other._statisticsTypeID),
      _isPhaseStart(other._isPhaseStart),
      _isGenerated(other._isGenerated),
      _wcTime(other._wcTime),
      _cpuTime(other._cpuTime),
      _basicMem(ownCopy(other._basicMem)),
      _detailedMem(ownCopy(other._detailedMem)) {}

PTOrviaDataPoint::~PTOrviaDataPoint() = default;

bool PTOrviaDataPoint::isSamePoint(const boost::shared_ptr<PTOrviaDataPoint>& other) const {
    return other && other->_pointType == _pointType && other->_groupingID == _groupingID &&
           other->_phaseID == _phaseID;
}

boost::shared_ptr<PTOrviaDataPoint> PTOrviaDataPoint::clone() const {
    return boost::make_shared<PTOrviaDataPoint>(*this);
}

PTKestruneDataPoint::PTKestruneDataPoint() : PTKestruneDataPoint(1) {}

PTKestruneDataPoint::PTKestruneDataPoint(std::int32_t pointType) : PTOrviaDataPoint(pointType) {}

PTKestruneDataPoint::PTKestruneDataPoint(RowStart)
    : PTOrviaDataPoint(0, RowStart{}), _modelID(0), _targetID(0) {}

PTKestruneDataPoint::PTKestruneDataPoint(std::int32_t pointType, RowStart)
    : PTOrviaDataPoint(pointType, RowStart{}) {}

// A point's class and its _pointType agree unless it came from a malformed row, so the wider
// fields are read only after a checked cast.
bool PTKestruneDataPoint::isSamePoint(const boost::shared_ptr<PTOrviaDataPoint>& other) const {
    if (!PTOrviaDataPoint::isSamePoint(other)) {
        return false;
    }
    const auto* wide = dynamic_cast<const PTKestruneDataPoint*>(other.get());
    return wide && wide->_modelID == _modelID && wide->_targetID == _targetID;
}

boost::shared_ptr<PTOrviaDataPoint> PTKestruneDataPoint::clone() const {
    return boost::make_shared<PTKestruneDataPoint>(*this);
}

PTYlvaneDataPoint::PTYlvaneDataPoint() : PTKestruneDataPoint(2) {}

bool PTYlvaneDataPoint::isSamePoint(const boost::shared_ptr<PTOrviaDataPoint>& other) const {
    if (!PTKestruneDataPoint::isSamePoint(other)) {
        return false;
    }
    const auto* wide = dynamic_cast<const PTYlvaneDataPoint*>(other.get());
    return wide && wide->_machineID == _machineID && wide->_chartID == _chartID;
}

boost::shared_ptr<PTOrviaDataPoint> PTYlvaneDataPoint::clone() const {
    return boost::make_shared<PTYlvaneDataPoint>(*this);
}
