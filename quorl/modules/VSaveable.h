#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

#include <map>
#include <memory>

namespace Quorl
{

/// A collection of savers by name: the formats that something offers to be saved in. It only grows.
///
/// Threads: no lock.
class QUORL_API VSaveable
{
public:
    /// Visits savers; true goes on.
    class QUORL_API SaveIterator
    {
    public:
        virtual ~SaveIterator();
        virtual bool apply(const string& name, const RefPtr<ZelmSaver>& saver) = 0;
    };

    VSaveable();
    VSaveable(const VSaveable&) = delete;
    VSaveable& operator=(const VSaveable&) = delete;
    ~VSaveable();

    /// Puts a saver in the place of an earlier one of the name.
    void addSaver(const string& name, const RefPtr<ZelmSaver>& saver);

    RefPtr<ZelmSaver> getSaver(const string& name) const; ///< null if there is none

    /// The first live saver, by name, of exactly that extension. A leading point counts.
    RefPtr<ZelmSaver> getSaverByExt(const string& extension) const;

    /// The youngest of those that have saved; of equal ones the last by name.
    RefPtr<ZelmSaver> getMostRecentSaver() const;

    /// Visits the live savers in the order of names. Savers may come meanwhile, and the visitor may
    /// end what it visits.
    /// \return the number of visits, the one that answered false included.
    int iterateSavers(SaveIterator& visitor);

    /// Has the most recent saver save to its last file. \return false also if there is none.
    bool autosave() const;

    /// What stands for the state of the whole application. Made at first use.
    static VSaveable& GlobalState();

private:
    using Savers = std::map<string, RefPtr<ZelmSaver>>;

    const Savers& savers() const; // also where there are none

    // Shared with walks, which a visitor's deeds may outlive; null until the first is added.
    std::shared_ptr<Savers> savers_;
};

} // namespace Quorl
