#pragma once

#include <quorl/foundation/Export.h>
#include <quorl/foundation/InterfaceBase.h>
#include <quorl/foundation/TypeInfo.h>

#include <map>
#include <memory>
#include <typeinfo>

namespace Tolmen
{

/// A bag of typed services, at most one for each type. What derives from it can carry services that
/// its class does not know.
///
/// Owns its interfaces; a copy shares them. They are caches rather than state, so a constant cube
/// takes them too. The usual idiom: find; if there is none alive, make one and add it; use it.
///
/// Threads: no lock.
class TOLMEN_API Intercube
{
public:
    Intercube();
    Intercube(const Intercube& other);
    Intercube& operator=(const Intercube& other);
    virtual ~Intercube();

    /// \return the interface of that domain, to be cast to the class that is expected; null if
    /// there is none. Never makes one.
    RefPtr<InterfaceBase> findInterface(const std::type_info& domain) const;

    /// As `findInterface`, but asks `createInterface` where there is none, and keeps what it makes.
    RefPtr<InterfaceBase> getInterface(const std::type_info& domain);

    /// Keeps the interface under its own domain, in place of an earlier one.
    /// \pre the handle is alive.
    void addInterface(const RefPtr<InterfaceBase>& interface) const;

    /// Makes an interface on demand; the default answers null.
    virtual RefPtr<InterfaceBase> createInterface(const std::type_info& domain) const;

private:
    using Interfaces = std::map<TypeInfo, RefPtr<InterfaceBase>>;

    mutable std::unique_ptr<Interfaces> interfaces_; // null as long as there are none, as in most
};

} // namespace Tolmen
