#pragma once

#include <cstddef>
#include <string>

namespace QuorlTest
{

/// Captures what the process writes to a standard stream while this lives, at the level of
/// descriptors: output of `printf`, of streams and of system calls alike, in order.
///
/// A capture of each stream may run at one time.
class CapturedOutput
{
public:
    enum Stream
    {
        Out = 1,
        Err = 2,
    };

    explicit CapturedOutput(Stream stream = Out);
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// Puts the stream back, if `text` has not.
    ~CapturedOutput();

    /// Ends the capture. \return all that was written since its start; the same again when called
    /// again.
    std::string text();

    /// What was written since this was last called. The capture goes on.
    std::string take();

private:
    void restore();

    const Stream stream_;
    int file_;     // takes the output; goes with its last descriptor
    int original_; // where the stream went before; -1 once it is put back
    std::string text_;
    std::size_t taken_ = 0;
};

/// What `act` writes to standard output.
template <class Act>
std::string outputOf(Act&& act)
{
    CapturedOutput captured(CapturedOutput::Out);
    act();
    return captured.text();
}

/// What `act` writes to standard error.
template <class Act>
std::string errorOutputOf(Act&& act)
{
    CapturedOutput captured(CapturedOutput::Err);
    act();
    return captured.text();
}

} // namespace QuorlTest
