#include <quorl/foundation/BinaryFile.h>
#include <quorl/foundation/StringFile.h>
#include <quorl/registry/InputCreatorCache.h>
#include <quorl/registry/InputCreatorTables.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <utility>

namespace Quorl
{
namespace
{

constexpr char kMagic[] = "ZelmInputCreatorCache\n"; // with the zero byte at its end

/// Reads the items of a cache file one by one. Each number answers nothing where the file ends
/// early, unlike those of the cache of creators; none is believed beyond what can be read behind
/// it.
class StrictReader
{
public:
    explicit StrictReader(Tolmen::OwnedFile file) : file_(std::move(file)) {}

    bool readMagic()
    {
        std::array<char, sizeof kMagic> found{};
        return std::fread(found.data(), 1, found.size(), file_.get()) == found.size() &&
               std::ranges::equal(found, kMagic);
    }

    std::optional<std::uint64_t> count() { return number<std::uint64_t>(); }
    std::optional<std::int32_t> signedNumber() { return number<std::int32_t>(); }

    std::optional<double> weight()
    {
        const auto bits = number<std::uint64_t>();
        return bits ? std::optional(std::bit_cast<double>(*bits)) : std::nullopt;
    }

    /// A text that ends early shows in the fixed item that follows each.
    string text() { return Tolmen::fgetstring(file_.get()); }

private:
    template <class Integer>
    std::optional<Integer> number()
    {
        Integer value = 0;
        return Tolmen::fgetnumber(value, file_.get()) ? std::optional(value) : std::nullopt;
    }

    Tolmen::OwnedFile file_;
};

/// Gives each word of a set its weight.
class SetWeights final : public VCreationPreferences::Iterator
{
public:
    explicit SetWeights(const std::map<string, double>& weights) : weights_(weights) {}

    bool apply(const string& word, double& weight) override
    {
        weight = weights_.at(word);
        return true;
    }

private:
    const std::map<string, double>& weights_;
};

RefPtr<VCreationPreferences> makePreferences(const std::map<string, double>& weights)
{
    RefPtr<VCreationPreferences> preferences(new VCreationPreferences);
    for (const auto& [word, weight] : weights) *preferences += word;
    SetWeights setWeights(weights);
    preferences->iterate(setWeights);
    return preferences;
}

std::optional<RefPtr<VCreationPreferences>> readProperties(StrictReader& reader,
                                                           std::uint64_t count)
{
    if (count == 0) return RefPtr<VCreationPreferences>();
    std::map<string, double> weights;
    for (std::uint64_t left = count; left > 0; --left)
    {
        const string word = reader.text();
        const auto weight = reader.weight();
        if (!weight) return std::nullopt;
        weights.emplace(word, *weight); // of equal words the first one counts
    }
    return makePreferences(weights);
}

bool readEntry(StrictReader& reader)
{
    const string type = reader.text();
    const string provider = reader.text();
    const auto ip = reader.signedNumber();
    if (!ip) return false;
    const auto count = reader.count();
    if (!count) return false;
    const auto preferences = readProperties(reader, *count);
    if (!preferences) return false;
    std::printf("   INPUT CACHE: Type [%s] provided by [%s] (%d ip, %d properties)\n", type.c_str(),
                provider.c_str(), *ip, static_cast<int>(*count));
    theInputCreatorLoader()[type].append({provider, *preferences});
    return true;
}

bool readGroup(StrictReader& reader)
{
    const auto entries = reader.count();
    if (!entries) return false;
    for (std::uint64_t left = *entries; left > 0; --left)
        if (!readEntry(reader)) return false;
    return true;
}

} // namespace

bool LoadInputCreatorCache(const string& path)
{
    Tolmen::OwnedFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return false;
    StrictReader reader(std::move(file));
    if (!reader.readMagic()) return false;
    const auto groups = reader.count();
    if (!groups) return false;
    for (std::uint64_t left = *groups; left > 0; --left)
        if (!readGroup(reader)) return false;
    return true;
}

bool CreateInputCreatorCache(const string& /*path*/)
{
    return true;
}

} // namespace Quorl
