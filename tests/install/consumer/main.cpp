// Built against an installed tracer: logs one phase and reads the points back.
#include <performance_tracer/performance_tracer.h>

#include <cstdio>

int main() {
    const int grouping = ptAddGrouping("Consumer");
    ptEnableTracer("Consumer", true);
    ptLogOrviaData(grouping, "install check", true);
    ptLogOrviaData(grouping, "install check", false);

    const auto points = ptTracer()->snapshotRawData();
    if (!points || points->size() != 2) {
        return 1;
    }
    std::printf("consumer: %zu points, phase '%s'\n", points->size(),
                ptGetPhaseStr(points->front()->_phaseID).c_str());
    return 0;
}
