#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Interface.h>
#include <quorl/foundation/RefPtr.h>

#include <map>

namespace Quorl
{

/// A weighted set of words that says what a creator offers, or what a caller asks for; two of them
/// can be scored against each other. The word "local" makes a parameter local that gets an input.
class QUORL_API VCreationPreferences : public Tolmen::Interface<VCreationPreferences>
{
public:
    /// Visits words, and may change their weights; true goes on.
    class QUORL_API Iterator
    {
    public:
        virtual bool apply(const string& word, double& weight);
        virtual ~Iterator();
    };

    /// Visits words; true goes on.
    class QUORL_API ConstIterator
    {
    public:
        virtual bool apply(const string& word, double weight);
        virtual ~ConstIterator();
    };

    VCreationPreferences();

    /// One word of weight 1; none if it is empty.
    VCreationPreferences(const string& a);

    /// Words of weight 1. Deliberate: empty ones count.
    VCreationPreferences(const string& a, const string& b);
    VCreationPreferences(const string& a, const string& b, const string& c);

    VCreationPreferences(const VCreationPreferences& other);
    VCreationPreferences& operator=(const VCreationPreferences& other);

    /// Copies what is behind the handle; empty for a dead one.
    VCreationPreferences(const RefPtr<VCreationPreferences>& other);
    ~VCreationPreferences() override;

    /// Enters a word with weight 1, whatever it had.
    VCreationPreferences& operator+=(const string& word);

    unsigned long long size() const;
    bool contains(const string& word) const;

    double weight(const string& word) const; ///< 0 if it is absent

    /// 1 plus the sum of the products of the weights over the common words.
    double weight(const VCreationPreferences& other) const;

    /// Visits the words in their order. They may change meanwhile; an assignment to them ends the
    /// weight that is shown.
    /// \return the number of visits that answered true.
    int iterate(Iterator& visitor);
    int iterate(ConstIterator& visitor) const;

private:
    std::map<string, double> weights_;
};

} // namespace Quorl
