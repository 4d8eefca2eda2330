#pragma once

#include <tests/model/WalkMoves.h>
#include <tests/model/WalkTranscript.h>

#include <quorl/foundation/Profiler.h>
#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VObject.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/values/ValuePool.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace QuorlTest::Walks
{

/// A network on which a history is played, and what is seen of it meanwhile, in terms that are the
/// same for all networks with that history: objects by their numbers, evaluations by the order in
/// which they began, ages as they are, since the clock begins anew with each network.
///
/// One at a time: functions that objects run ahead of their updates find it by themselves.
class Network final : public Tolmen::Profiler::Listener
{
public:
    /// Makes an object of a kind, which does what the network tells it.
    using Make = Quorl::VObject* (*)(Network& network, const std::string& name, int number,
                                     int kind);

    Network(Make make, Transcript& transcript);
    ~Network() override;
    Network(const Network&) = delete;
    Network& operator=(const Network&) = delete;

    void play(const Move& move);

    /// Notes all that can be seen.
    void recordAll();

    // What objects ask

    /// What an object does in a hook: notes it, and makes its moves.
    void run(int number, int hook, const Quorl::VRequest* request, double precision = 0);
    bool update(int number, Quorl::VRequest& request, double precision);
    int behaviour(int number, int aspect) const;
    bool tellsLies(int number);
    int numberOf(const Quorl::VSlot& slot) const;
    int numberOf(const Quorl::WeakVObjectPtr& object) const; ///< -1 for none

    // What tickets ask

    void notePoll(int pollsLeft) { transcript_.note("poll", pollsLeft); }

private:
    using State = Quorl::RefPtr<Quorl::VStateCreatorBase::State>;

    /// What an object does in a hook.
    struct Act
    {
        Move move;
        int period;
        int count;
    };

    struct Script
    {
        int behaviour[kAspects] = {1, 0, 0, 0, 0, 1, 1};
        std::vector<Act> acts[kHooks];
        int questions = 0;
    };

    static bool outcome(int which);
    bool takesNext(const Move& move);
    Move broughtTo(const Quorl::VRequest& request, Move act) const;
    void perform(const Move& move, Quorl::VRequest* ticket);
    bool performOnWiring(const Move& move);
    bool performOnAges(const Move& move);
    bool performOnObject(const Move& move);
    bool performOnRequest(const Move& move, Quorl::VRequest* ticket);

    void newObject(int kind, bool hasValidator);
    void newSlot(const Move& move);
    int newParameter(const std::string& name);
    void attach(const Move& move);
    void dropSlot(int number);
    void leave(int number);
    void behave(const Move& move);
    void writeSlot(const Move& move);
    void release(const Move& move);
    void writeTrace(const Move& move);
    void writeExecutor(const Move& move);
    void writeState(const Move& move);
    void writeLentState(const Move& move);
    void touch(const Move& move);
    void changeLocality(const Move& move);
    void changeTicket(const Move& move, Quorl::VRequest& ticket);
    Quorl::Ageable anyAge(int from, const Quorl::Ageable& present) const;

    std::unique_ptr<Quorl::VRequest> newTicket(int pool, int how);
    void askAfresh(const Move& move);
    void askAgain(const Move& move);
    void askInside(const Move& move, Quorl::VRequest* ticket);
    void ask(int object, Quorl::VRequest& request, int how);
    bool answer(Quorl::VObject& object, Quorl::VRequest& request, int how);
    bool isWalkable(int root);
    static bool isWalked(const Quorl::VObject& object);
    int steps(int object, int budget, std::vector<bool>& isInside) const;

    void record();
    void recordObject(int number);
    void recordParameter(int number);
    void recordTable(const Quorl::VRequest::ID& id);
    void recordRequest(const Quorl::VRequest& request);
    void look(int number);
    int numberOf(const Quorl::WeakPtr<Quorl::VRequest::ID>& id) const;
    int numberOfSerial(int serial) const;
    int firstOfChain(int number) const;

    void opened(const Tolmen::Profiler::Section& section) override;
    void closed(const Tolmen::Profiler::Section& section, double seconds) override;

    Quorl::RefPtr<Quorl::VObject> object(int number) const; ///< null if it has ended
    const Quorl::RefPtr<Quorl::ValuePool>& pool(int number) const;
    const Quorl::RefPtr<Quorl::VParameter>& parameter(int number) const;

    const Make make_;
    Transcript& transcript_;
    std::vector<Quorl::RefPtr<Quorl::VObject>> owned_; // null where they have left
    std::vector<Quorl::WeakVObjectPtr> objects_;
    std::vector<int> serials_;
    std::vector<Script> scripts_;
    std::vector<std::vector<int>> outputs_; // of objects: parameters
    std::vector<Quorl::RefPtr<Quorl::VParameter>> parameters_;
    std::vector<Quorl::RefPtr<Quorl::VSlot>> slots_;
    std::vector<int> slotOwners_;
    std::vector<Quorl::RefPtr<Quorl::VConnectionValidator>> validators_;
    std::vector<Quorl::RefPtr<Quorl::ValuePool>> pools_;
    std::map<std::pair<int, int>, State*> lentStates_; // by objects and pools
    std::vector<Quorl::WeakPtr<Quorl::VRequest::ID>> evaluations_;
    std::vector<std::vector<int>> sources_; // of objects, as they are wired
    std::unique_ptr<Quorl::VRequest> lastTicket_;
    Move lastRequest_{MoveKinds::Request, 0, 0, 0};
    Move recorder_{MoveKinds::kKinds, 0, 0, 0}; // its successor is an act
    int fuel_ = 0;
    int ignoring_ = 0; // questions whether to ignore an input, which has to stay attached
    bool isWiringKnown_ = false;
};

} // namespace QuorlTest::Walks
