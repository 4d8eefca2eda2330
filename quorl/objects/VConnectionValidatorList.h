#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Rare.h>
#include <quorl/foundation/RefPtr.h>

#include <set>

namespace Quorl
{

/// The validators that follow the connections of a container. Held weakly; the dead stay and are
/// passed over.
class QUORL_API VConnectionValidatorList
{
public:
    VConnectionValidatorList();
    VConnectionValidatorList(const VConnectionValidatorList&);
    VConnectionValidatorList& operator=(const VConnectionValidatorList& other);
    ~VConnectionValidatorList();

    /// Enters a validator, once.
    void insertConnectionValidator(const WeakPtr<VConnectionValidator>& validator);

    /// A connection of the object with that number (reduced to 32 bits) has changed. Ages stand.
    void taintConnectionValidators(long object) const;

    /// Whether one of them is alive.
    bool hasConnectionValidators() const;

    /// Shows each that is alive.
    template <class Show>
    void showConnectionValidators(Show&& show) const
    {
        for (const WeakPtr<VConnectionValidator>& validator : validators_)
            if (validator) show(*validator);
    }

    /// As `VConnectionValidator::taintFromRequest`, for all.
    void taintFromRequest(const VRequest& request);

private:
    Tolmen::Rare<std::set<WeakPtr<VConnectionValidator>>> validators_;
};

} // namespace Quorl
