#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/FlatIndex.h>

#include <atomic>
#include <cstdint>

namespace Tolmen
{

/// Tells those who remember what they saw of a network whether it may be another now.
///
/// What makes the shape of networks (connections, flags, who is alive) is changed rarely: each
/// change counts in `shape()`, of the whole process, and whoever finds another number than before
/// looks anew. That a pool gets or loses a variable counts in `variables()`. Ages are changed all
/// the time, and variables are made in the midst of evaluations: a watch is told the places that
/// its keeper has relied on, and finds out whether one of them has been written to.
///
/// Threads: a watch belongs to the thread that made it. Shapes may be changed by any thread. A
/// thread that keeps no watch, such as one that an update waits for, may have written to whatever
/// others keep; one that keeps a watch itself is taken to be at a network of its own.
class TOLMEN_API Watch
{
public:
    Watch() = default;
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// From now on changes of that place are noticed.
    void keep(const void* place);

    /// Rises when a place that was kept has been written to, or may have been.
    std::uint32_t alarms() const
    {
        return isSet_ ? alarms_ + theStrangers.load(std::memory_order_relaxed) - strangers_ : 0;
    }

    // For those who change something

    /// A place where an age or a table is kept has been written to.
    static void written(const void* place)
    {
        if (theWatchCount.load(std::memory_order_relaxed) != 0) tell(place);
    }

    static std::uint64_t shape() { return theShape.load(std::memory_order_relaxed); }
    static void shapeChanges() { theShape.fetch_add(1, std::memory_order_relaxed); }

    static std::uint64_t variables() { return theVariables.load(std::memory_order_relaxed); }
    static void variablesChange(const void* key)
    {
        theVariables.fetch_add(1, std::memory_order_relaxed);
        written(key);
    }

    /// Brackets a change: what sees the network in the midst of it looks anew afterwards.
    class ShapeChange
    {
    public:
        ShapeChange() { shapeChanges(); }
        ~ShapeChange() { shapeChanges(); }
        ShapeChange(const ShapeChange&) = delete;
        ShapeChange& operator=(const ShapeChange&) = delete;
    };

private:
    static void tell(const void* place);

    static std::atomic<std::int32_t> theWatchCount; // of all threads
    static std::atomic<std::uint32_t> theStrangers; // writes of threads that keep none
    static std::atomic<std::uint64_t> theShape;
    static std::atomic<std::uint64_t> theVariables;

    FlatIndex<const void*, bool> places_;
    std::uint32_t alarms_ = 0;
    std::uint32_t strangers_ = 0; // when it was set
    bool isSet_ = false;
    Watch* outer_ = nullptr; // of the same thread; a walk within a walk has its own
};

} // namespace Tolmen
