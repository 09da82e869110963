#pragma once

// The errors of PerfTools.Tracer: one message id per kind of failure, in the group
// "performance_tracer:PerformanceTracer", each with its number of text arguments. Their texts
// lie in the host's message catalogue.

#include <pt_platform/except.h>

#include <string>

/// Message id and argument count of every error the methods raise.
#define PT_MESSAGE_IDS(X)                \
    X(ExpectedEvenNumberOfParameters, 0) \
    X(InvalidNames, 0)                   \
    X(NoRawTracerData, 0)                \
    X(MissingHvfExt, 0)                  \
    X(OpenFileFailed, 1)                 \
    X(WriteFileFailed, 1)                \
    X(MinParamsNotReached, 1)            \
    X(MaxParamsExceeded, 1)              \
    X(UnexpectedValue, 1)                \
    X(ParameterMismatchBoolean, 1)       \
    X(WindowsOnlyFeature, 1)             \
    X(ParameterMismatchString, 1)        \
    X(InvalidMetric, 3)                  \
    X(NoRawTracerDataLoaded, 1)          \
    X(ExpectedNames, 1)                  \
    X(AddGroupingError, 1)               \
    X(AddGroupingExpectedString, 0)      \
    X(RemoveGroupingError, 1)            \
    X(DataWriteFail, 2)

namespace performance_tracer {

/// Tags of the message ids: every id is an error class of its own.
struct PerformanceTracer {
#define PT_MESSAGE_TAG(name, count)                     \
    struct name {                                       \
        static constexpr const char* id = #name;        \
        static constexpr std::size_t arguments = count; \
    };
    PT_MESSAGE_IDS(PT_MESSAGE_TAG)
#undef PT_MESSAGE_TAG
};

/// The message group of the tracer's errors.
inline constexpr const char* kMessageGroup = "performance_tracer:PerformanceTracer";

/// A message of the tracer's group.
class MessageId : public resource_core::BaseMsgID {
public:
    MessageId(const char* id, std::size_t argumentSlots)
        : BaseMsgID(kMessageGroup, id, argumentSlots) {}
    std::unique_ptr<resource_core::BaseMsgID> clone() const override {
        return std::make_unique<MessageId>(*this);
    }
};

/// The error of a message id.
template <typename Tag>
using Error = foundation::core::except::Exception<Tag, std::exception, void>;

/// Raises the error of a message id with its text arguments.
template <typename Tag, typename... Args>
[[noreturn]] void raise(const Args&... arguments) {
    static_assert(sizeof...(Args) == Tag::arguments, "wrong number of message arguments");
    MessageId message(Tag::id, Tag::arguments);
    std::size_t slot = 0;
    (message.setArgument(slot++, std::string(arguments)), ...);
    throw Error<Tag>(message);
}

using Errors = PerformanceTracer;

}  // namespace performance_tracer
