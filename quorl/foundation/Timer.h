#pragma once

#include <chrono>

namespace Tolmen
{

/// A stop watch, started by its constructor.
class Timer
{
public:
    Timer() : start_(std::chrono::steady_clock::now()) {}
    ~Timer() = default;

    /// Since the construction, in seconds.
    double seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_;
};

} // namespace Tolmen
