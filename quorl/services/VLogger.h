#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>

namespace Quorl
{

/// A subscriber of messages, and the channel on which they are sent, each with the scope in which
/// it arose. The kernel sends none: it is for applications and modules. Without a subscriber a
/// message vanishes; the levels gate nothing.
///
/// There is no way to withdraw but to end.
///
/// Threads: no lock. Each task has its scopes to itself; subscribers are called on the thread of
/// the sender, and are to be activated before several send.
class QUORL_API VLogger : public Tolmen::ReferenceBase<VLogger>
{
public:
    /// One scope.
    struct QUORL_API State
    {
        /// \throws std::logic_error for a null name.
        State(const char* scopeName, int scopeIndent);

        string name;
        string file;           ///< set by whoever wants, through `CurrentState`
        unsigned int line = 0; ///< likewise
        int indent;            ///< blanks
    };

    VLogger();
    ~VLogger() override;

    /// Subscribes. Twice means that each message comes twice.
    /// \return false, and nothing comes, while no strong handle holds this object.
    bool activate();

    /// Gets a message; prints it on standard output by default, with a prefix that tells file,
    /// line, function and level, and one line end. An empty message prints nothing.
    /// \param indent blanks ahead of the message.
    /// \param thread the task that sent it; null outside of all.
    virtual void printmsg(const string& message, int level, int indent, const string& file,
                          unsigned int line, const WeakPtr<VTask>& thread, const string& function);

    /// Sends a message with its whole description to each live subscriber, in the order of
    /// activation.
    static void print(const string& message, int level, int indent, const string& file,
                      unsigned int line, const WeakPtr<VTask>& thread, const string& function);

    /// Sends a message with the description of the current scope.
    static void print(int level, const string& message);

    /// The same; what is longer than 1023 characters is cut off.
    [[gnu::format(printf, 2, 3)]] static void printf(int level, const char* format, ...);

    /// Opens a scope in the current task. \throws std::logic_error for a null name.
    static void enter(const char* name);

    /// Closes the current scope. \pre it was opened by `enter`; nothing is checked.
    static void leave();

    static State& CurrentState(); ///< the scope that is open, or the base one, called "::"

    /// Prints the state of the list of subscribers on standard output.
    static void print_internals();
};

} // namespace Quorl

namespace Tolmen
{
extern template class ReferenceBase<Quorl::VLogger>;
} // namespace Tolmen
