#pragma once

// Message-identified errors of the host: every error carries a message object (group, id and
// arguments) whose text comes from the host's message catalogue, and an error id made of the
// group and the id, by which scripts tell errors apart.

#include <pt_platform/export.h>

#include <boost/exception_ptr.hpp>
#include <boost/variant.hpp>

#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace resource_core {

/// One argument of a message: a number, a narrow text or a 16-bit text.
using MsgArg = boost::variant<std::int64_t, std::string, std::u16string>;

/// A message: its arguments, its group and its id, in that order.
class PT_PLATFORM_API BaseMsgID {
public:
    BaseMsgID(std::string group, std::string id, std::size_t argumentSlots = 0);
    virtual ~BaseMsgID();
    BaseMsgID(const BaseMsgID&) = default;
    BaseMsgID& operator=(const BaseMsgID&) = default;

    /// A deep copy of the same class.
    virtual std::unique_ptr<BaseMsgID> clone() const;

    /// Fills an argument slot, adding slots up to it if needed.
    void setArgument(std::size_t slot, MsgArg value);
    const std::vector<MsgArg>& arguments() const { return _arguments; }
    const std::string& group() const { return _group; }
    const std::string& id() const { return _id; }

private:
    std::vector<MsgArg> _arguments;
    std::string _group;
    std::string _id;
};

/// The text of a message: the catalogue's text for its group and id with the placeholders
/// {1}, {2} ... replaced by the arguments. A message the catalogue lacks reads as its error id
/// followed by its arguments.
PT_PLATFORM_API std::string formatMessage(const BaseMsgID& message);
/// The catalogue's text with its placeholders, or null.
PT_PLATFORM_API const char* catalogueText(const std::string& group, const std::string& id);
/// Every id the catalogue has a text for in a group.
PT_PLATFORM_API std::vector<std::string> catalogueIds(const std::string& group);
/// One argument as text.
PT_PLATFORM_API std::string argumentText(const MsgArg& argument);

}  // namespace resource_core

namespace foundation::core::except {

/// What every message-identified error offers, whatever its class.
class PT_PLATFORM_API IMsgIDException {
public:
    virtual ~IMsgIDException();

    /// "<group>:<id>" of a message.
    static std::string get_error_id(const resource_core::BaseMsgID& message);

    virtual const resource_core::BaseMsgID& getMessageID() const = 0;
    virtual const std::string& getErrorID() const = 0;
    /// The catalogue text with the arguments filled in.
    virtual const std::string& getMessageText() const = 0;
    /// A copy of the error as an exception pointer, to be rethrown elsewhere.
    virtual boost::exception_ptr cloneException() const = 0;
    [[noreturn]] virtual void rethrow() const = 0;
};

/// An error of one message id (Id is a tag type per id), derived from Base.
template <typename Id, typename Base = std::exception, typename = void>
class Exception : public Base, public IMsgIDException {
public:
    explicit Exception(const resource_core::BaseMsgID& message)
        : _message(message.clone()),
          _errorId(get_error_id(message)),
          _text(resource_core::formatMessage(message)) {}
    Exception(const Exception& other)
        : Base(other),
          IMsgIDException(other),
          _message(other._message->clone()),
          _errorId(other._errorId),
          _text(other._text) {}
    Exception& operator=(const Exception&) = delete;

    const char* what() const noexcept override { return _text.c_str(); }
    const resource_core::BaseMsgID& getMessageID() const override { return *_message; }
    const std::string& getErrorID() const override { return _errorId; }
    const std::string& getMessageText() const override { return _text; }
    boost::exception_ptr cloneException() const override { return boost::copy_exception(*this); }
    [[noreturn]] void rethrow() const override { throw *this; }

private:
    std::unique_ptr<resource_core::BaseMsgID> _message;
    std::string _errorId;
    std::string _text;
};

/// An allocation failure of the host's own records.
class PT_PLATFORM_API bad_alloc : public std::bad_alloc {
public:
    const char* what() const noexcept override;
};

}  // namespace foundation::core::except
