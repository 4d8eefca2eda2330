#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/foundation/MutableName.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/registry/VManagedObjectBase.h>
#include <quorl/registry/VManagedObjectIterator.h>

#include <functional>
#include <limits>
#include <typeinfo>

namespace Quorl
{

/// What can be found by name at run time: a creator, a loader, an object of the network.
///
/// It belongs to the domain that its class tells, a table for the whole process. An inserted object
/// is owned by its domain, and lives until it is removed or its module is unloaded.
///
/// The walks may be given visitors that insert and remove any objects.
///
/// Threads: the one that loads modules and makes objects. No lock.
class QUORL_API VManagedObject : public virtual VManagedObjectBase,
                                 public Tolmen::Intercube,
                                 public Tolmen::MutableName
{
public:
    static constexpr int kFirstPriority = std::numeric_limits<int>::min();
    static constexpr int kLastPriority = std::numeric_limits<int>::max();

    using Visit = std::function<bool(int, const RefPtr<VManagedObject>&, const string&)>;
    using ModuleVisit =
        std::function<bool(const string& module, const RefPtr<VManagedObject>&, const string&)>;

    /// Visits entries; true goes on. The object is null where it waits for its module.
    class QUORL_API ModuleIterator
    {
    public:
        virtual bool apply(const string& module, const RefPtr<VManagedObject>& object,
                           const string& name) = 0;
        virtual ~ModuleIterator();
    };

    /// Told of each entry of a module that is unloaded: of its object while that is alive, or null
    /// where it waits for the module already.
    class QUORL_API VRemoveItem
    {
    public:
        virtual void removeItem(const string& module, const RefPtr<VManagedObject>& object) = 0;
        virtual ~VRemoveItem();
    };

    /// Neither enters the object in its domain: the derived class calls `insert`.
    VManagedObject();
    VManagedObject(const string& givenName, int givenPriority);
    VManagedObject(const VManagedObject&) = delete;
    VManagedObject& operator=(const VManagedObject&) = delete;

    /// Does not touch the registry.
    ~VManagedObject() override;

    virtual const std::type_info& getDomainType() const = 0;

    /// Enters the object in its domain, under `wantedName` or, if a live object has that, with the
    /// first free number behind it, which stands with its ones first. Takes over an entry that
    /// waits for its module.
    ///
    /// Refused, which is said on standard output: an empty name, and a name of which there are 100
    /// already. The object then keeps its own.
    void insert(const string& wantedName, int givenPriority);

    /// Takes the object of this object's name, which is this one if it was inserted, out of the
    /// domain; that may end it. \return whether there was one; false if it was never inserted.
    bool remove();

    /// Moves an inserted object to another priority.
    void setPriority(int newPriority);

    /// The path of the module that supplied the object; a text in brackets if it is not entered.
    string getLoadModule() const;

    VCreatorMap* Vmap() const; ///< the domain, which is made if there is none

    /// Makes a domain. \return true.
    static bool InitDomain(const std::type_info& domain);

    /// The number of entries, live or not; 0 for an unknown domain, which stays unknown.
    static int size(const std::type_info& domain);
    static int count(); ///< over all domains

    /// The object of that name. If its module is not loaded, this loads it, and tells so on
    /// standard output. \return null if there is none, or the module did not supply it.
    static RefPtr<VManagedObject> find(const std::type_info& domain, const string& name);

    /// Visits the live objects with a priority in [from, to), lowest first, equal ones in the order
    /// of insertion. \return the number of visits that answered true.
    static int traverse(const std::type_info& domain, VManagedObjectIterator& visitor,
                        int from = kFirstPriority, int to = kLastPriority);

    /// The same. \throws std::bad_function_call for an empty function, at the first object.
    static int iterate(const std::type_info& domain, const Visit& visit, int from = kFirstPriority,
                       int to = kLastPriority);

    /// Takes an object out of a domain by its name. \return whether there was one.
    static bool remove(const std::type_info& domain, const string& name);

    /// Visits the entries whose module the table of modules does not know, domain by domain, by
    /// name: those of the program itself, whose path is empty, are among them; those of modules
    /// that were unloaded, or are known from the cache, are not. False ends the walk of that
    /// domain.
    /// \return the number of visits that answered true.
    static int iterateModules(ModuleIterator& visitor);
    static int iterateModules(const ModuleVisit& visit);

    /// Lets go of all objects of a module; their entries wait for it to be loaded again. So do
    /// their lines in the index of priorities. Deliberate: insertion adds another line all the
    /// same, so that walks show an object once more for each time that its module was loaded again.
    static void UnloadVModule(const string& module, VRemoveItem& remover);

    static string CurrentLoadModule; ///< path of the module that is being loaded, else empty

    int priority = 0;
    VCreatorMap* domainMap = nullptr; ///< not owned; null until `insert`, and after `remove`
};

} // namespace Quorl
