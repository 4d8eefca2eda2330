#include <quorl/registry/VCreationPreferences.h>

namespace Quorl
{
namespace
{

constexpr double kPlainWeight = 1.0;

template <class Weights, class Visitor>
int countWhileTrue(Weights& weights, Visitor& visitor)
{
    int count = 0;
    for (auto entry = weights.begin(); entry != weights.end(); ++count)
    {
        const string word = entry->first;
        if (!visitor.apply(word, entry->second)) break;
        entry = weights.upper_bound(word);
    }
    return count;
}

/// What a visitor may be the last one to let go of.
RefPtr<VCreationPreferences> heldForVisits(const VCreationPreferences& preferences)
{
    return Tolmen::heldIfOwned(
        WeakPtr<VCreationPreferences>(const_cast<VCreationPreferences*>(&preferences)));
}

} // namespace

bool VCreationPreferences::Iterator::apply(const string& /*word*/, double& /*weight*/)
{
    return true;
}

VCreationPreferences::Iterator::~Iterator() = default;

bool VCreationPreferences::ConstIterator::apply(const string& /*word*/, double /*weight*/)
{
    return true;
}

VCreationPreferences::ConstIterator::~ConstIterator() = default;

VCreationPreferences::VCreationPreferences() = default;

VCreationPreferences::VCreationPreferences(const string& a)
{
    if (!a.empty()) *this += a;
}

VCreationPreferences::VCreationPreferences(const string& a, const string& b)
    : weights_{{a, kPlainWeight}, {b, kPlainWeight}}
{
}

VCreationPreferences::VCreationPreferences(const string& a, const string& b, const string& c)
    : weights_{{a, kPlainWeight}, {b, kPlainWeight}, {c, kPlainWeight}}
{
}

VCreationPreferences::VCreationPreferences(const VCreationPreferences& other) = default;
VCreationPreferences& VCreationPreferences::operator=(const VCreationPreferences& other) = default;

VCreationPreferences::VCreationPreferences(const RefPtr<VCreationPreferences>& other)
{
    if (other) weights_ = other->weights_;
}

VCreationPreferences::~VCreationPreferences() = default;

VCreationPreferences& VCreationPreferences::operator+=(const string& word)
{
    weights_[word] = kPlainWeight;
    return *this;
}

unsigned long long VCreationPreferences::size() const
{
    return weights_.size();
}

bool VCreationPreferences::contains(const string& word) const
{
    return weights_.contains(word);
}

double VCreationPreferences::weight(const string& word) const
{
    const auto entry = weights_.find(word);
    return entry == weights_.end() ? 0.0 : entry->second;
}

double VCreationPreferences::weight(const VCreationPreferences& other) const
{
    double score = 1.0;
    for (const auto& [word, mine] : weights_)
        if (const auto theirs = other.weights_.find(word); theirs != other.weights_.end())
            score += mine * theirs->second;
    return score;
}

int VCreationPreferences::iterate(Iterator& visitor)
{
    const RefPtr<VCreationPreferences> held = heldForVisits(*this);
    return countWhileTrue(weights_, visitor);
}

int VCreationPreferences::iterate(ConstIterator& visitor) const
{
    const RefPtr<VCreationPreferences> held = heldForVisits(*this);
    return countWhileTrue(weights_, visitor);
}

} // namespace Quorl
