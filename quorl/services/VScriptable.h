#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <map>
#include <memory>

namespace Quorl
{

/// Something that offers functors to scripts, by name.
///
/// A copy begins with none, and an assignment changes nothing: functors belong to the object that
/// they were made for. Threads: no lock.
class QUORL_API VScriptable
{
public:
    /// Visits functors, which may be null; true goes on.
    class QUORL_API iterator
    {
    public:
        virtual ~iterator();
        virtual bool apply(const string& name, const RefPtr<VScriptFunctor>& functor) = 0;
    };

    VScriptable();
    VScriptable(const VScriptable& other);
    VScriptable& operator=(const VScriptable& other);
    virtual ~VScriptable();

    /// Puts a functor in the place of an earlier one of the name. \return the functor.
    RefPtr<VScriptFunctor> insertFunctor(const string& name, const RefPtr<VScriptFunctor>& functor);
    void removeFunctor(const string& name);
    RefPtr<VScriptFunctor> findFunctor(const string& name) const; ///< null if there is none
    unsigned long long nFunctors() const;

    /// Visits the functors in the order of names. \return whether the walk reached the end.
    bool iterate(iterator& visitor);

protected:
    /// Has `insert` put in what is there from the start, before anybody looks: scripts ask few
    /// objects. To be called once, ahead of all else.
    void insertAtFirstUse(void (*insert)(VScriptable& scriptable)) { insertFirst_ = insert; }

private:
    using Table = std::map<string, RefPtr<VScriptFunctor>>;

    Table& functors() const;
    void insertThoseOfClass() const;

    mutable std::unique_ptr<Table> functors_; // null until it is used
    mutable void (*insertFirst_)(VScriptable&) = nullptr;
};

} // namespace Quorl
