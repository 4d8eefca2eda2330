#pragma once

#include <tests/model/EvaluationModel.h>

#include <quorl/objects/VConnectionValidator.h>
#include <quorl/objects/VObject.h>
#include <quorl/slots/VInputBase.h>
#include <quorl/slots/VSlot.h>
#include <quorl/slots/VValueParameter.h>
#include <quorl/values/ValuePool.h>
#include <tests/support/CapturedOutput.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace QuorlTest::Evaluation
{

/// A ticket that is cancelled after a number of polls.
class CountedRequest final : public Quorl::VRequest
{
public:
    CountedRequest(const Quorl::RefPtr<Quorl::ValuePool>& pool, int& polls)
        : VRequest(pool, false), pollsLeft(polls)
    {
    }
    CountedRequest(const CountedRequest&) = default; // another ticket of the same evaluation

    bool isCancelled() const override
    {
        if (pollsLeft > 0) --pollsLeft;
        return pollsLeft == 0;
    }

    int& pollsLeft; ///< -1 for never
};

class ScriptedObject;

/// The kernel and the model side by side: every move is made on both, and then they are compared.
/// The first difference is told, and ends the game.
class Game
{
public:
    /// Begins with some objects, each with inputs and outputs.
    Game(int objects, int verbosity);
    ~Game();
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    /// \return whether there is no difference yet.
    bool play(const std::vector<Move>& moves);

    /// What is different; empty if nothing is.
    const std::string& difference() const { return difference_; }

    const Model& model() const { return model_; }

private:
    friend class ScriptedObject;
    friend class Follower;

    Move brought(const Move& move) const;
    void make(const Move& move);
    void newObject();
    void newInput(int object, int level, int kind);
    void newOutput(int object, bool isLocal);
    int newParameter(const Quorl::RefPtr<Quorl::VParameter>& parameter, int source, bool isLocal);
    bool takesNext(const Move& move);

    std::string top(const Move& move);
    std::string topOfModel(const Move& move);
    void perform(const Move& move, CountedRequest* ticket);
    void askInside(const Move& move, CountedRequest* ticket);

    void compare();
    void compareObject(int number);
    void compareTables(const std::string& whose, const Quorl::RefPtr<Quorl::VRequest::ID>& id,
                       int evaluation);
    void expect(const std::string& what, const std::string& found, const std::string& wanted);
    void expect(const std::string& what, long long found, long long wanted);
    int numberOf(int serial) const; ///< of an object, by its serial number; -1 for none

    Model model_;
    std::vector<Quorl::RefPtr<Quorl::VObject>> objects_;
    std::vector<Quorl::RefPtr<Quorl::VParameter>> parameters_;
    std::vector<Quorl::RefPtr<Quorl::VSlot>> slots_;
    std::vector<Quorl::RefPtr<Quorl::VConnectionValidator>> validators_;
    std::vector<Quorl::RefPtr<Quorl::ValuePool>> pools_; // the first one is none
    std::vector<Quorl::RefPtr<Quorl::VInputBase>> followers_;
    std::map<int, int> numbers_; // of objects by serial number
    std::vector<std::string> events_;
    std::string difference_;
    Move recorder_{Move::kKinds, 0, 0, 0}; // its successor is an act of an update or observer
    int fuel_ = 0;
    const int verbosity_;
    CapturedOutput out_{CapturedOutput::Out};
    CapturedOutput err_{CapturedOutput::Err};
};

} // namespace QuorlTest::Evaluation
