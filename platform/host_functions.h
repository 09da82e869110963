#pragma once

// The host functions that the host layer answers itself.

#include <pt_platform/hvx.h>

#include <map>
#include <string>

namespace pt::platform {

/// hostinfo, hostfeature, version, evalcapture, orviaroot and kssvInternal.
std::map<std::string, hvxHostFunction> hostFunctions();

/// The host's version, as `version` answers it.
inline constexpr const char* kHostVersion = "0.1.0";

}  // namespace pt::platform
