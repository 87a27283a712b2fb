#include "supervision/stream_commands.h"

#include <cinttypes>
#include <cstdio>
#include <sstream>

namespace vx::supervision {
namespace {

// The text as the 255-byte buffer holds it.
std::string bounded(std::string text)
{
    if (text.size() > commandBufferSize - 1)
        text.resize(commandBufferSize - 1);
    return text;
}

// sscanf "%d": leading blanks, a sign, digits; 0 when nothing is read.
std::int32_t scanInt(const std::string& token)
{
    int value = 0;
    if (std::sscanf(token.c_str(), "%d", &value) != 1)
        return 0;
    return value;
}

platform::WindowHandle scanHandle(const std::string& token)
{
    unsigned long long value = 0;
    if (std::sscanf(token.c_str(), "%llx", &value) != 1)
        return 0;
    return value;
}

} // namespace

std::string handleText(platform::WindowHandle handle)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%016llX", static_cast<unsigned long long>(handle));
    return buffer;
}

CommandToStream::CommandToStream(std::string parameters, std::string command)
    : parameters_(std::move(parameters)), command_(std::move(command))
{
    std::istringstream in(parameters_);
    std::string token;
    while (in >> token)
        tokens_.push_back(token);
}

std::string CommandToStream::text() const
{
    return bounded(command_);
}

CommandNotParams::CommandNotParams(std::string parameters, std::string command)
    : CommandToStream(std::move(parameters), std::move(command))
{
}

CommandHideWindow::CommandHideWindow(std::string parameters, std::string command)
    : CommandToStream(std::move(parameters), std::move(command))
{
    if (tokens_.size() != 1)
        throw std::invalid_argument("No current parameters");
    value_ = tokens_[0];
}

std::string CommandHideWindow::text() const
{
    return bounded(command_ + " " + value_);
}

CommandGetDates::CommandGetDates(std::string parameters, std::string command, platform::WindowHandle target)
    : CommandToStream(std::move(parameters), std::move(command)), target_(target)
{
    if (!tokens_.empty())
        parsedTarget_ = scanHandle(tokens_.back());
}

std::string CommandGetDates::text() const
{
    return bounded(baseText() + " " + handleText(target_));
}

CommandGetImage::CommandGetImage(std::string parameters, std::string command, platform::WindowHandle target)
    : CommandGetDates(std::move(parameters), std::move(command), target)
{
    if (tokens_.size() < 2)
        throw std::invalid_argument("Not actual parameters.");
    width_ = scanInt(tokens_[0]);
    height_ = scanInt(tokens_[1]);
}

std::string CommandGetImage::baseText() const
{
    return bounded(command_ + " " + std::to_string(width_) + " " + std::to_string(height_));
}

} // namespace vx::supervision
