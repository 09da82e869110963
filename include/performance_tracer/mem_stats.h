#pragma once

// Memory records of a point: raw ones in bytes, processed ones in MiB with their change over a
// phase. Nothing samples memory on Linux, so live records stay zero; real figures arrive only
// with data loaded from a file written where memory is measured.

#include <performance_tracer/export.h>

#include <boost/shared_ptr.hpp>

namespace pt {

/// Bytes to MiB, applied as figure * factor.
inline constexpr double kBytesToMegabytes = 9.5367431640625e-7;

class PT_API BaseMemStats {
public:
    virtual ~BaseMemStats();
};

/// The process's own use of memory.
class PT_API BasicMemStats : public BaseMemStats {
public:
    BasicMemStats() = default;
    BasicMemStats(double procMemUsage, double procMemUsagePeak, double procVMSize);

    double procMemUsage = 0.0;
    double procMemUsagePeak = 0.0;
    double procVMSize = 0.0;
};

class PT_API BasicProcessedMemStats : public BasicMemStats {
public:
    BasicProcessedMemStats() = default;
    /// The raw figures in MiB; all zero for a null record. Deltas start at zero.
    explicit BasicProcessedMemStats(const boost::shared_ptr<BasicMemStats>& raw);

    /// Sets the deltas against the raw record of the phase's start; this object holds the end.
    /// procMemUsagePeakOverUsage measures the end's peak against the start's usage. A null
    /// start counts as a zero record.
    void setDeltas(const boost::shared_ptr<BasicMemStats>& start);

    double procMemUsageDelta = 0.0;
    double procMemUsagePeakDelta = 0.0;
    double procMemUsagePeakOverUsage = 0.0;
    double procVMSizeDelta = 0.0;
};

/// The address space as a whole.
class PT_API DetailedMemStats : public BaseMemStats {
public:
    DetailedMemStats() = default;
    /// The arguments come in the order in which rows and files hold the figures, which is not
    /// the order of the fields.
    DetailedMemStats(double freeMem, double resMem, double commitMem, double dllsMem,
                     double nonprocessMem);

    /// Converts the five figures from bytes to MiB in place.
    virtual void toMegabytes();

    double commitMem = 0.0;
    double resMem = 0.0;
    double freeMem = 0.0;
    double dllsMem = 0.0;
    double nonprocessMem = 0.0;
};

class PT_API DetailedProcessedMemStats : public DetailedMemStats {
public:
    DetailedProcessedMemStats() = default;
    /// The raw figures in MiB; all zero for a null record. Deltas start at zero.
    explicit DetailedProcessedMemStats(const boost::shared_ptr<DetailedMemStats>& raw);

    /// Sets each delta to the end figure less the start figure in MiB; a null start sets all
    /// five deltas to zero.
    void setDeltas(const boost::shared_ptr<DetailedMemStats>& start);

    double commitMemDelta = 0.0;
    double resMemDelta = 0.0;
    double freeMemDelta = 0.0;
    double dllsMemDelta = 0.0;
    double nonprocessMemDelta = 0.0;
};

}  // namespace pt
