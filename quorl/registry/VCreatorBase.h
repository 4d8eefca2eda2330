#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Attributes.h>
#include <quorl/foundation/Intercube.h>
#include <quorl/registry/VCreatorProperties.h>
#include <quorl/registry/VInputCreatorBase.h>

#include <list>

namespace Quorl
{

/// The factory of one kind of object. A module defines creators as static objects, so that they
/// are registered by loading it.
///
/// Beside its entry in the registry, a creator is found by its identifier, which is the name in its
/// key, under each application that it is meant for, and in its category. These tables hold it
/// weakly, pass over dead entries, and take them out now and then.
///
/// Threads: constructed on the thread that loads modules. No lock.
class QUORL_API VCreatorBase : public VInputCreatorBase, public VCreatorProperties
{
public:
    /// The creators of an application, and what is known of it.
    class QUORL_API ApplicationProperties
    {
    public:
        ApplicationProperties();
        ~ApplicationProperties();

        /// The attribute "Enabled", a `Tolmen::Chunk<bool>`; true where there is none.
        bool isEnabled() const;

        Tolmen::Attributes attributes;
        std::list<WeakPtr<VCreatorBase>> creators; ///< in the order of registration
    };

    /// Visits applications; true goes on.
    class QUORL_API ApplicationIterator
    {
    public:
        virtual ~ApplicationIterator();
        virtual bool apply(const string& name, ApplicationProperties& properties) = 0;
    };

    /// Visits creators of one identifier; true goes on.
    class QUORL_API IdentifierIterator
    {
    public:
        virtual ~IdentifierIterator();
        virtual bool apply(const WeakPtr<VCreatorBase>& creator) = 0;
    };

    /// Enters the creator in the registry under its key, and in all other tables.
    ///
    /// An empty name is refused by the registry, and said on standard output; the creator is in the
    /// other tables all the same.
    /// \param name the key, "category/name(variant)".
    /// \param pinned whether the creator holds a strong share of itself, so that no handle ever
    /// deletes it: what a static object needs.
    /// \param text what the creator tells of its module; kept, not copied. May be null.
    VCreatorBase(const string& name, int priority, const RefPtr<VCreationPreferences>& preferences,
                 bool pinned, const char* text);

    /// The same with texts of its own, from which its name is made.
    VCreatorBase(const VCreatorProperties& properties, int priority,
                 const RefPtr<VCreationPreferences>& preferences, bool pinned, const char* text);
    ~VCreatorBase() override;

    /// Makes an object.
    /// \param name of the new object; the registry may change it to a free one.
    /// \param context what the creator should know, such as for which slot it works.
    /// \return null if it could not.
    virtual RefPtr<VObject> create(const string& name, const Tolmen::Intercube& context) = 0;

    /// The creator's name, behind `base` and the separator 0x1E, which nobody can type, if there is
    /// a base.
    virtual string createChildname(const string& base) const;

    /// A name for an object that is to take `info` from `parent`. Without either, or if the other
    /// form answers nothing, it begins with the identifier.
    virtual string createChildname(const WeakPtr<VObject>& parent,
                                   const RefPtr<VAcceptInfo>& info) const;

    /// The ways in which objects of this kind can take `parent` as an input; empty if there is
    /// none.
    virtual std::list<RefPtr<VAcceptInfo>> accept(const RefPtr<VObject>& parent) = 0;

    /// Deliberate: visits all objects, and deletes none.
    void deleteAllInstances(const std::type_info& type) const;

    /// Visits the applications in the order of their names.
    /// \return the number of visits that answered true.
    static int iterateApplications(ApplicationIterator& visitor);

    /// Visits the live creators of an identifier in the order of construction.
    /// \return the number of visits that answered true.
    static int iterateIdentifiers(const string& identifier, IdentifierIterator& visitor);

private:
    void enterTables(bool pinned);
};

} // namespace Quorl
