#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/Forward.h>
#include <quorl/foundation/Watch.h>

#include <cstdint>

namespace Tolmen
{

/// A stamp of the process-wide logical clock. It counts changes, not seconds; a larger stamp is
/// younger. Serves as a base class, a member and a map's value alike.
///
/// A new age is that of the last change, no younger: objects made between two changes have one age.
///
/// Threads: the clock is plain. A lost tick can at worst give two objects one stamp.
class TOLMEN_API Ageable
{
public:
    /// Takes the clock's present value; the clock stands.
    Ageable() : stamp_(GlobalTime.stamp_) {}
    constexpr explicit Ageable(std::int64_t stamp) : stamp_(stamp) {}

    Ageable(const Ageable&) = default;

    Ageable& operator=(const Ageable& other)
    {
        stamp_ = other.stamp_;
        Watch::written(this);
        return *this;
    }

    std::int64_t stamp() const { return stamp_; }

    /// Advances the clock by one and takes its new value: younger than all that was before.
    void touch()
    {
        stamp_ = ++GlobalTime.stamp_;
        Watch::written(this);
    }

    static Ageable GlobalTime; ///< the clock; starts at 1
    static Ageable Ooooold;    ///< of what never happened: older than all that the clock gives

    /// Older is less.
    friend constexpr bool operator==(const Ageable& left, const Ageable& right)
    {
        return left.stamp_ == right.stamp_;
    }
    friend constexpr bool operator<(const Ageable& left, const Ageable& right)
    {
        return left.stamp_ < right.stamp_;
    }
    friend constexpr bool operator<=(const Ageable& left, const Ageable& right)
    {
        return left.stamp_ <= right.stamp_;
    }
    friend constexpr bool operator>(const Ageable& left, const Ageable& right)
    {
        return left.stamp_ > right.stamp_;
    }
    friend constexpr bool operator>=(const Ageable& left, const Ageable& right)
    {
        return left.stamp_ >= right.stamp_;
    }

private:
    std::int64_t stamp_;
};

/// Raises `age` to `other` if that is younger; an age never falls.
inline void raiseAge(Ageable& age, const Ageable& other)
{
    if (age < other) age = other;
}

} // namespace Tolmen
