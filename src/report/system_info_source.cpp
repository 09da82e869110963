#include "report/system_info_source.h"

namespace pt::report {

namespace {

constinit SystemInfoSource registeredSource = nullptr;

}  // namespace

void setSystemInfoSource(SystemInfoSource source) { registeredSource = source; }

const SystemInfoRecord& tracerSystemInfo() {
    static const SystemInfoRecord none;
    return registeredSource ? registeredSource() : none;
}

}  // namespace pt::report
