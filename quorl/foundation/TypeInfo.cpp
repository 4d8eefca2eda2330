#include <quorl/foundation/TypeInfo.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Tolmen
{

namespace
{

/// A type of internal linkage is equal to none but itself, even under the same name; any other is
/// equal to whatever has its name. That is how the two are told apart.
class Namesake : public std::type_info
{
public:
    explicit Namesake(const std::string& name) : std::type_info(name.c_str()) {}
    ~Namesake() override = default;
};

} // namespace

struct TypeInfo::Record
{
    explicit Record(const std::type_info& type)
        : name(type.name()), identity(type.name()), namesake(name), isInternal(!(type == namesake)),
          latest(&type)
    {
    }

    const std::string name;     // mangled, our own copy
    const char* const identity; // tells types of one name apart if `isInternal`
    const Namesake namesake;    // as good as the type itself unless that is internal, and it stays
    const bool isInternal;      // of an unnamed namespace: equal only to itself
    // May dangle after its module is unloaded. Keys are made and read by any thread.
    mutable std::atomic<const std::type_info*> latest;
};

namespace
{

class RecordTable
{
public:
    const TypeInfo::Record& recordOf(const std::type_info& type)
    {
        const std::lock_guard lock(mutex_);
        const auto [first, last] = records_.equal_range(type.name());
        for (auto entry = first; entry != last; ++entry)
            if (!entry->second->isInternal || entry->second->identity == type.name())
            {
                entry->second->latest.store(&type, std::memory_order_relaxed);
                return *entry->second;
            }
        return add(type);
    }

private:
    const TypeInfo::Record& add(const std::type_info& type)
    {
        auto record = std::make_unique<const TypeInfo::Record>(type);
        records_.emplace(record->name, record.get());
        return *record.release();
    }

    std::mutex mutex_;
    std::unordered_multimap<std::string_view, const TypeInfo::Record*> records_;
};

/// Never destroyed: keys live in static tables of all libraries.
RecordTable& theRecords()
{
    static auto* const table = new RecordTable;
    return *table;
}

} // namespace

TypeInfo::TypeInfo(const std::type_info& type) : record_(&theRecords().recordOf(type)) {}

const std::type_info& TypeInfo::get() const
{
    return record_->isInternal ? *record_->latest.load(std::memory_order_relaxed)
                               : record_->namesake;
}

const std::string& TypeInfo::name() const
{
    return record_->name;
}

bool TypeInfo::operator<(const TypeInfo& other) const
{
    if (record_ == other.record_) return false;
    // The runtime marks the names of internal types with a leading '*', which sorts first.
    if (record_->isInternal != other.record_->isInternal) return record_->isInternal;
    if (record_->isInternal) return record_->identity < other.record_->identity;
    return record_->name < other.record_->name;
}

} // namespace Tolmen
