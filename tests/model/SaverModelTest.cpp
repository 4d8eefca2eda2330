#include <quorl/modules/VSaveable.h>
#include <quorl/modules/ZelmSaver.h>
#include <tests/model/At.h>
#include <tests/model/Moves.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/Node.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Savers and their collections, an object's and the global one, against plain rows of numbers.
namespace QuorlTest
{
namespace
{

using Quorl::Ageable;
using Quorl::RefPtr;
using Quorl::VSaveable;
using Quorl::ZelmSaver;

const std::vector<std::string> kLabels = {"", "Ab", "a", "a b", "ab"}; // in their order
const std::vector<std::string> kExtensions = {"", ".x", "X", "x", "xx"};

enum Outcome : unsigned
{
    kFails,
    kWorks,
    kForgets, ///< works, and clears the last file in between
    kOutcomes,
};

struct Kinds
{
    enum Kind : int
    {
        Make,      ///< a saver of extension `a`, for collection `b` with label `c`
        Add,       ///< saver `a`, even a dead one, to collection `b` with label `c`
        Save,      ///< to file `a` what collection `b` has for label `c`
        SaveAgain, ///< saver `a`
        Autosave,  ///< collection `b`
        Visit,     ///< at most `a` of collection `b`; if `c` is odd, save each until one fails
        Change,    ///< the outcomes of all, by `a`
        SetAge,    ///< of saver `a` to that of saver `c`
        Destroy,   ///< saver `a`, though others have handles of it
        End,       ///< the object; a new one takes its place
        kKinds,
    };
    static constexpr const char* kNames[] = {"Make",  "Add",    "Save",   "SaveAgain", "Autosave",
                                             "Visit", "Change", "SetAge", "Destroy",   "End"};
};

using Move = MoveOf<Kinds>;
using Numbers = std::vector<std::size_t>;
using Notes = std::vector<std::pair<std::size_t, std::string>>; ///< of savers and texts

/// The rows: of each collection the number of the saver at each label.
struct Model
{
    struct Saver
    {
        std::string extension;
        std::int64_t age;
        std::string lastFile = "";
        bool isEnded = false;
    };

    std::size_t byExtension(const Numbers& row, const std::string& extension) const
    {
        for (const std::size_t number : row)
            if (!savers[number].isEnded && savers[number].extension == extension) return number;
        return 0;
    }

    std::size_t mostRecent(const Numbers& row) const
    {
        std::size_t best = 0;
        for (const std::size_t number : row)
            if (!savers[number].isEnded && !savers[number].lastFile.empty() &&
                savers[number].age >= savers[best].age)
                best = number;
        return best;
    }

    // Files are copies: one may be a `lastFile`, which changes.
    bool write(std::size_t number, const std::string file)
    {
        const std::size_t outcome = (mood + number) % kOutcomes;
        written.emplace_back(number, file);
        if (outcome == kForgets) savers[number].lastFile = "";
        if (outcome != kFails) savers[number].age = ++clock;
        return outcome != kFails;
    }

    bool save(std::size_t number, const std::string file)
    {
        if (savers[number].isEnded || !write(number, file)) return false;
        savers[number].lastFile = file;
        return true;
    }

    Notes visit(const Numbers& row, std::size_t most, bool saves)
    {
        Notes visited;
        for (std::size_t label = 0; label < row.size(); ++label)
        {
            if (savers[row[label]].isEnded) continue;
            visited.emplace_back(row[label], kLabels[label]);
            if ((saves && !save(row[label], "all")) || visited.size() >= most) break;
        }
        return visited;
    }

    /// A saver ends when no collection has it.
    void settle()
    {
        for (std::size_t number = 0; number < savers.size(); ++number)
            savers[number].isEnded |= std::ranges::count(rows[0], number) == 0 &&
                                      std::ranges::count(rows[1], number) == 0;
    }

    std::vector<Saver> savers{{"", Ageable::Ooooold.stamp(), "", true}}; ///< the first is none
    Numbers rows[2] = {Numbers(kLabels.size(), 0), Numbers(kLabels.size(), 0)};
    Notes written;
    std::size_t mood = kWorks;
    std::int64_t clock = Ageable::GlobalTime.stamp();
};

/// What the formats share: a note of what they write, and those that there are.
struct Formats
{
    Notes written;
    std::size_t mood = kWorks;
    std::vector<Quorl::WeakPtr<ZelmSaver>> all{{}};
};

struct Format final : ZelmSaver
{
    Format(Formats& others, const std::string& suffix)
        : ZelmSaver(suffix), formats(others), number(others.all.size())
    {
        formats.all.emplace_back(this);
    }
    bool save(const std::string& file) override
    {
        const std::size_t outcome = (formats.mood + number) % kOutcomes;
        formats.written.emplace_back(number, file);
        if (outcome == kForgets) lastFile.clear();
        return outcome != kFails;
    }
    Formats& formats;
    const std::size_t number;
};

struct Visitor final : VSaveable::SaveIterator
{
    Visitor(std::size_t mostVisits, bool savesEach) : most(mostVisits), saves(savesEach) {}
    bool apply(const std::string& label, const RefPtr<ZelmSaver>& saver) override
    {
        visited.emplace_back(static_cast<Format&>(*saver).number, label);
        return (!saves || saver->Save("all")) && visited.size() < most;
    }
    const std::size_t most;
    const bool saves;
    Notes visited;
};

class Game
{
public:
    ~Game()
    {
        for (const std::string& label : kLabels) VSaveable::GlobalState().addSaver(label, {});
        object_->Quorl::VManagedObject::remove();
    }

    void play(const std::vector<Move>& moves)
    {
        for (const Move& move : moves)
        {
            perform(move, at(move.a) % formats_.all.size(), at(move.b) % 2);
            model_.settle();
            compareSavers();
            compareCollection(*object_, model_.rows[0]);
            compareCollection(VSaveable::GlobalState(), model_.rows[1]);
        }
    }

private:
    void perform(const Move& move, std::size_t number, std::size_t owner)
    {
        VSaveable& savers = owner == 0 ? *object_ : VSaveable::GlobalState();
        Numbers& row = model_.rows[owner];
        const std::size_t label = at(move.c) % kLabels.size();
        const std::string& extension = kExtensions[at(move.a) % kExtensions.size()];
        const std::string file(at(move.a) % 3, 'f');
        const std::size_t best = model_.mostRecent(row);
        Model::Saver& expected = model_.savers[number];
        const RefPtr<ZelmSaver> saver = formats_.all[number];
        const RefPtr<ZelmSaver> found = savers.getSaver(kLabels[label]);
        switch (move.kind)
        {
            case Move::Make:
                row[label] = model_.savers.size();
                model_.savers.push_back({extension, model_.clock});
                savers.addSaver(kLabels[label], new Format(formats_, extension));
                break;
            case Move::Add:
                row[label] = number;
                savers.addSaver(kLabels[label], saver);
                break;
            case Move::Save:
                RC_ASSERT((found && found->Save(file)) == model_.save(row[label], file));
                break;
            case Move::SaveAgain:
                if (!saver) break;
                RC_ASSERT(saver->autosave() ==
                          (expected.lastFile != "" && model_.write(number, expected.lastFile)));
                break;
            case Move::Autosave:
                RC_ASSERT(savers.autosave() == model_.save(best, model_.savers[best].lastFile));
                break;
            case Move::Visit: visit(savers, row, at(move.a), move.c % 2 == 1); break;
            case Move::Change: formats_.mood = model_.mood = at(move.a); break;
            case Move::SetAge:
                if (!saver) break;
                expected.age = model_.savers[at(move.c) % model_.savers.size()].age;
                static_cast<Ageable&>(*saver) = Ageable(expected.age);
                break;
            case Move::Destroy:
                delete saver.rawptr();
                expected.isEnded = true;
                break;
            default:
                object_->Quorl::VManagedObject::remove();
                object_ = RefPtr<Node>(new Node("owner of savers"));
                model_.rows[0].assign(kLabels.size(), 0);
                model_.clock = Ageable::GlobalTime.stamp();
                break;
        }
    }

    void visit(VSaveable& savers, const Numbers& row, std::size_t most, bool saves)
    {
        Visitor visitor(most, saves);
        const int count = savers.iterateSavers(visitor);
        RC_ASSERT(visitor.visited == model_.visit(row, most, saves));
        RC_ASSERT(at(count) == visitor.visited.size());
    }

    void compareSavers() const
    {
        RC_ASSERT(formats_.written == model_.written);
        RC_ASSERT(Ageable::GlobalTime.stamp() == model_.clock);
        for (std::size_t number = 0; number < formats_.all.size(); ++number)
        {
            const auto& saver = formats_.all[number];
            const Model::Saver& expected = model_.savers[number];
            RC_ASSERT(!saver == expected.isEnded);
            if (saver) RC_ASSERT(saver->stamp() == expected.age);
            if (saver) RC_ASSERT(saver->lastFile == expected.lastFile);
        }
    }

    void compareCollection(VSaveable& savers, const Numbers& row)
    {
        for (std::size_t label = 0; label < row.size(); ++label)
            RC_ASSERT(savers.getSaver(kLabels[label]) == formats_.all[row[label]]);
        for (const std::string& extension : kExtensions)
            RC_ASSERT(savers.getSaverByExt(extension) ==
                      formats_.all[model_.byExtension(row, extension)]);
        RC_ASSERT(savers.getMostRecentSaver() == formats_.all[model_.mostRecent(row)]);
        visit(savers, row, kLabels.size(), false);
    }

    RefPtr<Node> object_{new Node("owner of savers")};
    Model model_;
    Formats formats_;
};

RC_GTEST_PROP(SaverModel, SavesAndFindsWhatRowsTell, ())
{
    const auto kind = rc::gen::weightedOneOf<int>({{4, rc::gen::inRange<int>(0, Move::Destroy)},
                                                   {1, rc::gen::inRange<int>(0, Move::kKinds)}});
    const auto number = rc::gen::inRange(0, 12);
    CapturedOutput out(CapturedOutput::Out);
    CapturedOutput errors(CapturedOutput::Err);
    Game().play(anyMoves<Move>(kind, number, number, number));
    RC_ASSERT(out.text() + errors.text() == "");
}

} // namespace
} // namespace QuorlTest
