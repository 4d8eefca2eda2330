#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Tolmen
{

/// A stack whose elements stay where they are, in segments of `kSegment` of them. A segment that
/// was needed once is kept to the end. What is left ends from the top down.
template <class T, std::size_t kSegment>
class SegmentedStack
{
public:
    SegmentedStack() = default;
    ~SegmentedStack()
    {
        while (!isEmpty()) pop();
    }
    SegmentedStack(const SegmentedStack&) = delete;
    SegmentedStack& operator=(const SegmentedStack&) = delete;

    bool isEmpty() const { return size_ == 0; }

    /// Makes an element on top. If its constructor throws, the stack is as before.
    template <class... Arguments>
    T& push(Arguments&&... arguments)
    {
        if (size_ == segments_.size() * kSegment)
            segments_.push_back(std::make_unique_for_overwrite<Segment>());
        T* const element = std::construct_at(at(size_), std::forward<Arguments>(arguments)...);
        ++size_;
        return *element;
    }

    /// \pre not empty.
    T& top() { return *at(size_ - 1); }

    /// \pre not empty.
    void pop() { std::destroy_at(at(--size_)); }

private:
    union Place
    {
        Place() {}
        ~Place() {}

        T element;
    };
    using Segment = std::array<Place, kSegment>;

    T* at(std::size_t index) const
    {
        return &(*segments_[index / kSegment])[index % kSegment].element;
    }

    std::vector<std::unique_ptr<Segment>> segments_;
    std::size_t size_ = 0;
};

} // namespace Tolmen
