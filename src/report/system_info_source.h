#pragma once

// Where the writers find the tracer's own system information when their caller hands them no
// record. The binding to the host registers the source as the library loads; the writers ask it
// only after their file has opened, since the first answer may have to ask the host.

#include <performance_tracer/system_info_record.h>

namespace pt::report {

using SystemInfoSource = const SystemInfoRecord& (*)();

/// Replaces the source; null leaves none.
void setSystemInfoSource(SystemInfoSource source);
/// The registered source's record, or an empty record while no source is registered.
const SystemInfoRecord& tracerSystemInfo();

}  // namespace pt::report
