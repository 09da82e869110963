#include <pt_platform/except.h>

namespace resource_core {

BaseMsgID::BaseMsgID(std::string group, std::string id, std::size_t argumentSlots)
    : _arguments(argumentSlots, MsgArg(std::string())),
      _group(std::move(group)),
      _id(std::move(id)) {}

BaseMsgID::~BaseMsgID() = default;

std::unique_ptr<BaseMsgID> BaseMsgID::clone() const { return std::make_unique<BaseMsgID>(*this); }

void BaseMsgID::setArgument(std::size_t slot, MsgArg value) {
    if (slot >= _arguments.size()) {
        _arguments.resize(slot + 1, MsgArg(std::string()));
    }
    _arguments[slot] = std::move(value);
}

}  // namespace resource_core

namespace foundation::core::except {

IMsgIDException::~IMsgIDException() = default;

std::string IMsgIDException::get_error_id(const resource_core::BaseMsgID& message) {
    return message.group() + ":" + message.id();
}

const char* bad_alloc::what() const noexcept { return "out of memory"; }

}  // namespace foundation::core::except
