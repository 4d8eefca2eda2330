#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// While this lives, the init routine of a module runs. The table does not know the module yet, but
/// objects that the routine makes have to keep it loaded, whatever it answers.
class BeingInitialised
{
public:
    /// \param module has to outlive this.
    explicit BeingInitialised(const RefPtr<VModule>& module);
    BeingInitialised(const BeingInitialised&) = delete;
    BeingInitialised& operator=(const BeingInitialised&) = delete;
    ~BeingInitialised();

    /// \return null if the init routine of no module of that path runs.
    static RefPtr<VModule> find(const string& path);

private:
    const RefPtr<VModule>& module_;
    BeingInitialised* const outer_; // a routine may load other modules
};

} // namespace Quorl
