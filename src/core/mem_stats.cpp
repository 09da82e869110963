#include <performance_tracer/mem_stats.h>

namespace pt {

BaseMemStats::~BaseMemStats() = default;

BasicMemStats::BasicMemStats(double usage, double peak, double vmSize)
    : procMemUsage(usage), procMemUsagePeak(peak), procVMSize(vmSize) {}

BasicProcessedMemStats::BasicProcessedMemStats(const boost::shared_ptr<BasicMemStats>& raw) {
    if (raw) {
        procMemUsage = raw->procMemUsage * kBytesToMegabytes;
        procMemUsagePeak = raw->procMemUsagePeak * kBytesToMegabytes;
        procVMSize = raw->procVMSize * kBytesToMegabytes;
    }
}

void BasicProcessedMemStats::setDeltas(const boost::shared_ptr<BasicMemStats>& start) {
    const BasicMemStats from = start ? *start : BasicMemStats();
    procMemUsageDelta = procMemUsage - from.procMemUsage * kBytesToMegabytes;
    procMemUsagePeakDelta = procMemUsagePeak - from.procMemUsagePeak * kBytesToMegabytes;
    // Deliberately crosses the fields: the phase's peak against the use at its start.
    procMemUsagePeakOverUsage = procMemUsagePeak - from.procMemUsage * kBytesToMegabytes;
    procVMSizeDelta = procVMSize - from.procVMSize * kBytesToMegabytes;
}

DetailedMemStats::DetailedMemStats(double free, double reserved, double committed, double dlls,
                                   double nonprocess)
    : commitMem(committed),
      resMem(reserved),
      freeMem(free),
      dllsMem(dlls),
      nonprocessMem(nonprocess) {}

void DetailedMemStats::toMegabytes() {
    commitMem *= kBytesToMegabytes;
    resMem *= kBytesToMegabytes;
    freeMem *= kBytesToMegabytes;
    dllsMem *= kBytesToMegabytes;
    nonprocessMem *= kBytesToMegabytes;
}

DetailedProcessedMemStats::DetailedProcessedMemStats(
    const boost::shared_ptr<DetailedMemStats>& raw) {
    if (raw) {
        commitMem = raw->commitMem * kBytesToMegabytes;
        resMem = raw->resMem * kBytesToMegabytes;
        freeMem = raw->freeMem * kBytesToMegabytes;
        dllsMem = raw->dllsMem * kBytesToMegabytes;
        nonprocessMem = raw->nonprocessMem * kBytesToMegabytes;
    }
}

void DetailedProcessedMemStats::setDeltas(const boost::shared_ptr<DetailedMemStats>& start) {
    if (!start) {
        commitMemDelta = resMemDelta = freeMemDelta = dllsMemDelta = nonprocessMemDelta = 0.0;
        return;
    }
    commitMemDelta = commitMem - start->commitMem * kBytesToMegabytes;
    resMemDelta = resMem - start->resMem * kBytesToMegabytes;
    freeMemDelta = freeMem - start->freeMem * kBytesToMegabytes;
    dllsMemDelta = dllsMem - start->dllsMem * kBytesToMegabytes;
    nonprocessMemDelta = nonprocessMem - start->nonprocessMem * kBytesToMegabytes;
}

}  // namespace pt
