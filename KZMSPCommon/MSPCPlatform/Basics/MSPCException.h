#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "MSPCMessage.h"

// Root of every failure the system raises on purpose. `name` tells the kind, `reason` is the fixed text a user sees
// in the log, `userInfo` holds extra context (empty when there is none). Whatever else is thrown is foreign.
// A reason and its values are one text, so the log shows it as one line; only a reason that is given as a message keeps
// the line ends of its own.
class MSPCException : public std::exception {
public:
    MSPCException(std::string_view name, std::string reason, std::string userInfo = {})
        : _name(name), _reason(std::move(reason)), _message("{}", _reason), _userInfo(std::move(userInfo)) {}
    MSPCException(std::string_view name, MSPCMessage reason)
        : _name(name), _reason(reason.text()), _message(std::move(reason)) {}

    // The kind's name, a literal with static lifetime.
    [[nodiscard]] std::string_view name() const noexcept { return _name; }
    [[nodiscard]] const std::string& reason() const noexcept { return _reason; }
    // The reason as a message shows it.
    [[nodiscard]] const MSPCMessage& message() const noexcept { return _message; }
    [[nodiscard]] const std::string& userInfo() const noexcept { return _userInfo; }
    // Adds what was going on, behind a comma; nothing where that has been said already.
    void addToUserInfo(std::string_view text) {
        if (_userInfo.find(text) == std::string::npos) {
            _userInfo.append(_userInfo.empty() ? "" : ", ").append(text);
        }
    }
    [[nodiscard]] const char* what() const noexcept override { return _reason.c_str(); }

private:
    std::string_view _name;
    std::string _reason;
    MSPCMessage _message;
    std::string _userInfo;
};

// A usage error or a refused argument; ends the run.
class CommandLineArgumentException : public MSPCException {
public:
    explicit CommandLineArgumentException(std::string reason)
        : MSPCException("CommandLineArgumentException", std::move(reason)) {}
    explicit CommandLineArgumentException(MSPCMessage reason)
        : MSPCException("CommandLineArgumentException", std::move(reason)) {}
};

// A template, list, input or output path that is not there or is of the wrong kind; ends the run.
class FileNotFoundException : public MSPCException {
public:
    explicit FileNotFoundException(std::string reason) : MSPCException("FileNotFoundException", std::move(reason)) {}
};

// A source or destination location that an import refuses.
class MSPIXMLException : public MSPCException {
public:
    explicit MSPIXMLException(std::string reason) : MSPCException("MSPIXMLException", std::move(reason)) {}
};

// Input that is not MSPDI, or a scenario document that cannot be made.
class MSPIMapperException : public MSPCException {
public:
    explicit MSPIMapperException(std::string reason) : MSPCException("MSPIMapperException", std::move(reason)) {}
};

// An XML document that cannot be loaded.
class MSPEXMLException : public MSPCException {
public:
    explicit MSPEXMLException(std::string reason) : MSPCException("MSPEXMLException", std::move(reason)) {}
};

// A bundle that cannot be made or written.
class KZMPPImporterException : public MSPCException {
public:
    explicit KZMPPImporterException(std::string reason, std::string userInfo = {})
        : MSPCException("KZMPPImporterException", std::move(reason), std::move(userInfo)) {}
};

// An assertion about the input or the program's own state that does not hold.
class MSPCInternalInconsistency : public MSPCException {
public:
    explicit MSPCInternalInconsistency(std::string reason)
        : MSPCException("MSPCInternalInconsistency", std::move(reason)) {}
};
