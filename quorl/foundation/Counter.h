#pragma once

#include <atomic>

namespace Tolmen
{

/// A number that several threads may raise and lower.
class Counter
{
public:
    Counter& operator++()
    {
        value_.fetch_add(1, std::memory_order_relaxed);
        return *this;
    }
    Counter& operator--()
    {
        value_.fetch_sub(1, std::memory_order_relaxed);
        return *this;
    }
    int value() const { return value_.load(std::memory_order_relaxed); }

private:
    std::atomic<int> value_{0};
};

/// Raises a counter for the time of a scope, however that ends.
class CounterScope
{
public:
    explicit CounterScope(Counter& counter) : counter_(counter) { ++counter_; }
    ~CounterScope() { --counter_; }
    CounterScope(const CounterScope&) = delete;
    CounterScope& operator=(const CounterScope&) = delete;

private:
    Counter& counter_;
};

} // namespace Tolmen
