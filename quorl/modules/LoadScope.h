#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// While this lives, code of a module runs that the table of modules does not know yet. Objects
/// that it makes have to keep the module loaded all the same, whatever becomes of the load.
///
/// Scopes are nested, as modules may load others at any time. Threads: one loads modules at a time.
class LoadScope
{
public:
    enum class Phase
    {
        StaticInitialisers,
        InitRoutine,
    };

    /// Shares in the module. \param module has to outlive this; nobody needs to own it yet.
    LoadScope(const VModule& module, Phase phase);
    LoadScope(const LoadScope&) = delete;
    LoadScope& operator=(const LoadScope&) = delete;

    /// Gives the share back without ending the module, even if it is the last one.
    ~LoadScope();

    /// \return null if no code of a module of that path runs so.
    static RefPtr<VModule> find(const string& path);

    /// The innermost module whose code runs so; null if there is none.
    static WeakPtr<VModule> innermost();

    /// The innermost module whose static initialisers run; null if there is none.
    static const VModule* inStaticInitialisers();

private:
    const VModule& module_;
    const Phase phase_;
    const LoadScope* const outer_;
};

} // namespace Quorl
