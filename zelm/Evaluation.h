#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/RefPtr.h>
#include <zelm/network/LoadedNetwork.h>

#include <optional>
#include <string>
#include <vector>

namespace Zelm
{

/// One object that ran.
struct Run
{
    std::string object;
    std::optional<double> seconds; ///< of its own, without what it waited for; if it is known
    long long age = 0;             ///< that it has since, in the context
    bool hasFailed = false;
};

/// One request of one context.
struct Outcome
{
    std::string context;
    std::string object;
    double seconds = 0.0;
    std::vector<Run> runs; ///< in their order
    std::string failure;   ///< what an update threw; empty if none did
    bool isCancelled = false;

    bool hasFailed() const;
};

/// What failed, in one line each, which begin with the context.
std::vector<std::string> failuresOf(const Outcome& outcome);

/// Whether something that feeds an object is younger than it is in a context. An update that
/// succeeds makes its object as young as what feeds it; one that fails leaves its age.
bool isStale(const Quorl::VObject& object, const RefPtr<Quorl::ValuePool>& context);

/// Brings objects of one network up to date, and notes what ran. One at a time in a process.
class Evaluation
{
public:
    explicit Evaluation(const RefPtr<LoadedNetwork>& network);

    /// Never throws what an update throws. Other evaluations can follow, whatever happened.
    Outcome request(const RefPtr<Quorl::VObject>& object, const RefPtr<Quorl::ValuePool>& context,
                    double precision) const;

private:
    const RefPtr<LoadedNetwork> network_;
};

} // namespace Zelm
