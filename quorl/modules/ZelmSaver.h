#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/Ageable.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// Writes something to a file in one format. Modules derive the formats.
///
/// Its age is that of the last successful save, before the first one that of its construction.
/// Failures change nothing, so that `autosave` still goes to the last good file. Threads: no lock.
class QUORL_API ZelmSaver : public Tolmen::ReferenceBase<ZelmSaver>, public Ageable
{
public:
    /// \param suffix of files of the format, as it is to be compared; with or without a point.
    explicit ZelmSaver(const string& suffix);
    ~ZelmSaver() override = 0;

    /// Writes the file. \return whether that worked.
    virtual bool save(const string& file) = 0;

    /// Saves, and remembers the file. A success makes the saver younger than all that is. To be let
    /// go of meanwhile is no harm.
    bool Save(const string& file);

    /// Saves to the last file again. \return false also if there is none.
    bool autosave();

    const string extension;
    string lastFile; ///< of the last success; empty before

private:
    bool saveAndTouch(const string& file);
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::ZelmSaver>;
} // namespace Tolmen
