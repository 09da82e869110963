// The Trace Event export over raw lists that no logging would make: any classes, names that
// are not UTF-8, starts and ends in any order, clocks that are not finite or step backwards,
// any memory figures. The export must write a file for every one of them.

#include <fuzzer/FuzzedDataProvider.h>

#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <boost/make_shared.hpp>

#include <cstdlib>
#include <string>

#include "report/trace_events.h"

namespace {

std::int32_t id(std::uint32_t kind, const std::string& name) {
    return static_cast<std::int32_t>(ptNameID(kind, name));
}

double clock(FuzzedDataProvider& in, double& now) {
    if (in.ConsumeBool()) {
        return in.ConsumeFloatingPoint<double>();  // anything, infinities and NaN included
    }
    now += in.ConsumeFloatingPointInRange(-0.01, 0.5);
    return now;
}

boost::shared_ptr<PTOrviaDataPoint> point(FuzzedDataProvider& in, double& now) {
    static const char* const kGroupings[] = {"GLOBAL", "Build", "Unaccounted Phase", ""};
    boost::shared_ptr<PTOrviaDataPoint> p;
    switch (in.ConsumeIntegralInRange(0, 2)) {
        case 2: {
            auto chart = boost::make_shared<PTYlvaneDataPoint>();
            chart->_machineID = id(PT_TABLE_MACHINE, in.ConsumeRandomLengthString(8));
            chart->_chartID = in.ConsumeIntegralInRange(-2, 4);  // ids without names too
            p = chart;
            break;
        }
        case 1: p = boost::make_shared<PTKestruneDataPoint>(); break;
        default: p = boost::make_shared<PTOrviaDataPoint>();
    }
    if (auto* model = dynamic_cast<PTKestruneDataPoint*>(p.get())) {
        model->_modelID = id(PT_TABLE_MODEL, in.ConsumeRandomLengthString(8));
        model->_targetID = id(PT_TABLE_TARGET, in.ConsumeRandomLengthString(8));
    }
    p->_groupingID = id(PT_TABLE_GROUPING, in.PickValueInArray(kGroupings));
    p->_phaseID = in.ConsumeBool() ? id(PT_TABLE_PHASE, "Unaccounted Phase")
                                   : id(PT_TABLE_PHASE, in.ConsumeRandomLengthString(12));
    p->_statisticsTypeID = in.ConsumeIntegralInRange(-1, 2);
    p->_isPhaseStart = in.ConsumeBool();
    p->_wcTime = clock(in, now);
    p->_cpuTime = clock(in, now);
    if (in.ConsumeBool()) {
        p->_basicMem = boost::make_shared<pt::BasicMemStats>(in.ConsumeFloatingPoint<double>(),
                                                             in.ConsumeFloatingPoint<double>(),
                                                             in.ConsumeFloatingPoint<double>());
    } else if (in.ConsumeBool()) {
        p->_basicMem.reset();
    }
    if (in.ConsumeBool()) {
        p->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
            in.ConsumeFloatingPoint<double>(), 1.0, 2.0, 3.0, in.ConsumeFloatingPoint<double>());
    }
    return p;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    pt::report::TraceEventsRequest request;
    request.byModel = in.ConsumeBool();
    request.names = {in.ConsumeBool() ? std::string("GLOBAL") : in.ConsumeRandomLengthString(8)};
    request.processName = in.ConsumeRandomLengthString(8);
    request.threadName = in.ConsumeRandomLengthString(8);
    PTRawDataVector points;
    double now = 0.0;
    while (in.remaining_bytes() > 0 && points.size() < 2000) {
        points.push_back(point(in, now));
    }
    pt::report::TraceEventsSummary summary;
    if (!pt::report::writeTraceEvents(*ptTracer(), "/dev/null", points, request, summary)) {
        std::abort();
    }
    ptClearRawData();  // the phase and model tables start again
    return 0;
}
