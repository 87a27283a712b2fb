#pragma once
// The commands the manager sends to a stream process. Each object is built,
// turned into its text once and dropped. Every text is formatted into a
// bounded buffer of 255 bytes, so a text never runs past 254 characters.
//
// Handles are written as sixteen upper-case hexadecimal digits, the form the
// first platform's "%p" gives on 64 bits, so a stream reads the same text on
// every platform.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/window_endpoint.h"

namespace vx::supervision {

inline constexpr std::size_t commandBufferSize = 255;

// "%016llX" of a handle.
std::string handleText(platform::WindowHandle handle);

class CommandToStream {
public:
    // Keeps both strings and splits `parameters` at white space into tokens.
    CommandToStream(std::string parameters, std::string command);
    virtual ~CommandToStream() = default;
    // The command alone.
    virtual std::string text() const;

    const std::vector<std::string>& tokens() const { return tokens_; }

protected:
    std::string parameters_;
    std::string command_;
    std::vector<std::string> tokens_;
};

class CommandNotParams : public CommandToStream {
public:
    CommandNotParams(std::string parameters, std::string command);
};

// "<command> <value>". Throws std::invalid_argument "No current parameters"
// unless there is exactly one token.
class CommandHideWindow : public CommandToStream {
public:
    CommandHideWindow(std::string parameters, std::string command);
    std::string text() const override;
    const std::string& value() const { return value_; }

private:
    std::string value_;
};

// "<baseText()> <target>"; the target says where the answer goes.
class CommandGetDates : public CommandToStream {
public:
    CommandGetDates(std::string parameters, std::string command, platform::WindowHandle target);
    std::string text() const override;
    virtual std::string baseText() const = 0;
    // The last token read as a handle (0 when there is none); unused.
    platform::WindowHandle parsedTarget() const { return parsedTarget_; }

protected:
    platform::WindowHandle target_;
    platform::WindowHandle parsedTarget_ = 0;
};

// "getimage <width> <height> <target>". Throws std::invalid_argument "Not
// actual parameters." with fewer than two tokens.
class CommandGetImage : public CommandGetDates {
public:
    CommandGetImage(std::string parameters, std::string command, platform::WindowHandle target);
    std::string baseText() const override;
    std::int32_t width() const { return width_; }
    std::int32_t height() const { return height_; }

private:
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
};

} // namespace vx::supervision
