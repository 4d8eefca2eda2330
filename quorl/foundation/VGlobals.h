#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/ApplicationQuitter.h>
#include <quorl/foundation/RefPtr.h>
#include <quorl/slots/VInputClass.h> // the table itself; a header that stands on std alone

#include <map>
#include <memory>
#include <set>

namespace Quorl
{

/// The tables that belong to the process and to no object. They stand together so that they are
/// made in one order, and so that modules, which share the kernel's memory, reach the same ones.
///
/// Threads: the one that loads modules and edits the network. No lock.
class QUORL_API VGlobals
{
public:
    struct ModuleInfo;
    using ModuleTable = std::map<string, ModuleInfo>; ///< by path of the module file

    /// Made at first use. What the tables own ends in the clean-up of statics; they can be asked
    /// behind it, too.
    static VGlobals& theGlobals();

    /// Calls each live quitter, in the set's order. Nothing else: whether and when the process ends
    /// is the application's decision.
    void quit() const;

    /// Enters a quitter; the dead are taken out now and then.
    void addQuitter(const WeakPtr<ApplicationQuitter>& quitter);

    const std::unique_ptr<ModuleTable> modules;
    std::set<RefPtr<ValuePoolCreator>> poolCreators; ///< asked for pools that do not exist
    std::map<string, WeakPtr<ValuePool>> pools;      ///< by name; the dead stay
    VInputClass inputClasses;
    std::set<WeakPtr<ApplicationQuitter>> quitters; ///< some are dead

private:
    VGlobals();
    ~VGlobals();

    void cleanUp();
};

} // namespace Quorl
