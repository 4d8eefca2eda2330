#include <quorl/foundation/RefererPool.h>

#include <quorl/foundation/Referer.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#if defined(__SANITIZE_ADDRESS__)
#    define QUORL_BLOCKS_FROM_THE_HEAP
#elif defined(__has_feature)
#    if __has_feature(address_sanitizer)
#        define QUORL_BLOCKS_FROM_THE_HEAP
#    endif
#endif

namespace Tolmen::RefererPool
{

#ifdef QUORL_BLOCKS_FROM_THE_HEAP

Referer* take()
{
    return new Referer;
}

void giveBack(Referer* block) noexcept
{
    delete block;
}

#else

namespace
{

constexpr std::size_t kBatch = 256; // a page of blocks

/// A block that nobody has. The first one of a batch in the store leads to the next batch.
struct Free
{
    Free* next;
    Free* nextBatch;
};
static_assert(sizeof(Free) <= sizeof(Referer) && alignof(Free) <= alignof(Referer));

/// Full batches, and what ended threads left.
class Store
{
public:
    void put(Free* batch) noexcept
    {
        const std::lock_guard lock(mutex_);
        batch->nextBatch = std::exchange(batches_, batch);
    }

    /// \return null if there is none.
    Free* get() noexcept
    {
        const std::lock_guard lock(mutex_);
        Free* const batch = batches_;
        if (batch) batches_ = batch->nextBatch;
        return batch;
    }

private:
    std::mutex mutex_;
    Free* batches_ = nullptr;
};

constinit Store theStore;

/// What one thread keeps: two batches at most, of which `spare` is a full one.
struct Shelf
{
    enum State
    {
        Unused,
        Open,
        Closed // the thread is ending, so nothing may be left here
    };

    Free* first = nullptr;
    Free* spare = nullptr;
    std::size_t count = 0; // of those behind `first`
    State state = Unused;
};

#    if defined(__GNUC__)
[[gnu::tls_model("initial-exec")]] // a few bytes, so that a library loaded late has them as well
#    endif
constinit thread_local Shelf theShelf;

void clear(Shelf& shelf) noexcept
{
    if (shelf.first) theStore.put(std::exchange(shelf.first, nullptr));
    if (shelf.spare) theStore.put(std::exchange(shelf.spare, nullptr));
    shelf.count = 0;
}

void open(Shelf& shelf)
{
    struct Close
    {
        ~Close()
        {
            clear(theShelf);
            theShelf.state = Shelf::Closed;
        }
    };
    static thread_local const Close atTheEnd;
    shelf.state = Shelf::Open;
}

Free* makeBatch()
{
    // Never freed: handles in static storage may outlive everything else.
    auto* const page = static_cast<std::byte*>(::operator new(kBatch * sizeof(Referer)));
    Free* batch = nullptr;
    for (std::size_t place = kBatch; place-- > 0;)
        batch = new (page + place * sizeof(Referer)) Free{batch, nullptr};
    return batch;
}

std::size_t countOf(const Free* batch)
{
    std::size_t count = 0;
    for (; batch; batch = batch->next) ++count;
    return count;
}

Free* takeFrom(Shelf& shelf)
{
    --shelf.count;
    return std::exchange(shelf.first, shelf.first->next);
}

void putOn(Shelf& shelf, Free* block) noexcept
{
    block->next = std::exchange(shelf.first, block);
    ++shelf.count;
}

[[gnu::noinline]] Free* fillAndTakeFrom(Shelf& shelf)
{
    if (shelf.state == Shelf::Unused) open(shelf);
    shelf.first = std::exchange(shelf.spare, nullptr);
    if (!shelf.first) shelf.first = theStore.get();
    if (!shelf.first) shelf.first = makeBatch();
    shelf.count = countOf(shelf.first);
    Free* const block = takeFrom(shelf);
    if (shelf.state == Shelf::Closed) clear(shelf);
    return block;
}

[[gnu::noinline]] void makeRoomAndPutOn(Shelf& shelf, Free* block) noexcept
{
    if (shelf.state == Shelf::Unused) open(shelf);
    if (shelf.spare) theStore.put(shelf.spare);
    shelf.spare = std::exchange(shelf.first, nullptr);
    shelf.count = 0;
    putOn(shelf, block);
    if (shelf.state == Shelf::Closed) clear(shelf);
}

} // namespace

Referer* take()
{
    Shelf& shelf = theShelf;
    return new (shelf.first ? takeFrom(shelf) : fillAndTakeFrom(shelf)) Referer;
}

void giveBack(Referer* block) noexcept
{
    Shelf& shelf = theShelf;
    std::destroy_at(block);
    auto* const free = new (block) Free{nullptr, nullptr};
    const bool hasRoom = shelf.state == Shelf::Open && shelf.count < kBatch;
    hasRoom ? putOn(shelf, free) : makeRoomAndPutOn(shelf, free);
}

#endif

} // namespace Tolmen::RefererPool
