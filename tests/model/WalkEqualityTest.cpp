#include <tests/model/PlainWalk.h>
#include <tests/model/WalkActors.h>
#include <tests/model/WalkHistory.h>
#include <tests/model/WalkNetwork.h>

#include <quorl/foundation/Ageable.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

/// The kernel's walk against the plain one: each history is played on a network of either kind, and
/// all that can be seen of the two has to be the same.
namespace QuorlTest::Walks
{
namespace
{

using Quorl::Ageable;
using Quorl::VRequest;

constexpr int kMostTrials = 3000; // by which a history is made shorter
constexpr int kLinesOfContext = 12;

/// Of all plain walks of a history. What is done inside of a walk may lead to exponentially many;
/// hardly any history comes near.
constexpr int kMostVisits = 3000;

/// Begins the clock anew, so that two networks that are played on alike have the same ages. What
/// was there before is not in the future afterwards.
class OwnClock
{
public:
    OwnClock() : before_(Ageable::GlobalTime) { Ageable::GlobalTime = Ageable(kBegin); }
    ~OwnClock() { raiseAge(Ageable::GlobalTime, before_); }
    OwnClock(const OwnClock&) = delete;
    OwnClock& operator=(const OwnClock&) = delete;

private:
    static constexpr std::int64_t kBegin = 1000;
    const Ageable before_;
};

class Streams
{
public:
    std::string take() { return out_.take() + err_.take(); }

private:
    CapturedOutput out_{CapturedOutput::Out};
    CapturedOutput err_{CapturedOutput::Err};
};

/// The number that the next evaluation but one gets.
int numberOfNextEvaluation()
{
    const Quorl::RefPtr<VRequest::ID> last(new VRequest::ID);
    return last->Tolmen::ReferenceBase<VRequest::ID>::ID + 1;
}

/// Text with each word that follows `before`, up to one of `ends`, changed by `change`.
template <class Change>
std::string withWordsChanged(const std::string& text, const std::string& before, const char* ends,
                             const Change& change)
{
    std::string result;
    std::size_t done = 0;
    for (std::size_t place = text.find(before); place != std::string::npos;
         place = text.find(before, done))
    {
        const std::size_t begin = place + before.size();
        const std::size_t end = std::min(text.find_first_of(ends, begin), text.size());
        result.append(text, done, begin - done) += change(text.substr(begin, end - begin));
        done = end;
    }
    return result.append(text, done);
}

/// Printed lines without what differs from network to network.
std::string withoutIdentities(std::string text, int firstEvaluation)
{
    text = withWordsChanged(text, "::request(Request ", ",", [&](const std::string& number) {
        return std::to_string(std::stoi(number) - firstEvaluation);
    });
    text = withWordsChanged(text, "Here already is a request (", ")",
                            [](const std::string&) { return "#"; });
    return withWordsChanged(text, "QuorlTest::", ":>]", [](const std::string& name) {
        return name == "PlainlyWalked" || name == "KernelWalked" ? "Walked" : name;
    });
}

struct Played
{
    std::size_t moves = 0;              ///< that were played
    std::vector<std::uint64_t> digests; ///< after each of them, and at the end
    std::string printed;
    std::vector<std::string> lines; ///< of a text, with what was printed
    bool operator==(const Played& other) const
    {
        return digests == other.digests && printed == other.printed;
    }
};

/// Ends ahead of the move with which there are too many visits.
Played play(const History& history, Network::Make make, Transcript::Form form, Streams& streams)
{
    const OwnClock clock;
    PlainlyWalked::visitsLeft = kMostVisits;
    const int firstEvaluation = numberOfNextEvaluation();
    Transcript transcript(form);
    Played played;
    {
        Network network(make, transcript);
        for (const Move& move : history)
        {
            if (form == Transcript::Text)
            {
                std::ostringstream line;
                line << "---- " << move;
                transcript.lines.push_back(line.str());
            }
            network.play(move);
            if (PlainlyWalked::visitsLeft == 0) break;
            ++played.moves;
            if (form == Transcript::Text)
                transcript.text("printed",
                                "\n" + withoutIdentities(streams.take(), firstEvaluation));
            played.digests.push_back(transcript.digest());
        }
        network.recordAll();
        played.digests.push_back(transcript.digest());
    }
    played.printed = withoutIdentities(streams.take(), firstEvaluation);
    played.lines = transcript.lines;
    return played;
}

/// The moves that were played.
History beginningOf(const History& history, const Played& played)
{
    return {history.begin(), history.begin() + static_cast<std::ptrdiff_t>(played.moves)};
}

bool isSame(const History& history, Streams& streams)
{
    const Played plain = play(history, &makeWalkedPlainly, Transcript::Digest, streams);
    if (plain.moves < history.size()) return isSame(beginningOf(history, plain), streams);
    return plain == play(history, &makeWalkedByKernel, Transcript::Digest, streams);
}

/// Leaves out moves, many at a time and then one by one, as long as the difference stays.
History shortened(History history, Streams& streams)
{
    int trials = kMostTrials;
    for (std::size_t length = history.size() / 2 + 1; length > 0;)
    {
        bool isShorter = false;
        for (std::size_t from = history.size(); from > 0 && trials > 0; --trials)
        {
            from -= std::min(from, length);
            History less = history;
            const auto begin = less.begin() + static_cast<std::ptrdiff_t>(from);
            less.erase(begin,
                       begin + static_cast<std::ptrdiff_t>(std::min(length, less.size() - from)));
            if (less.size() == history.size() || isSame(less, streams)) continue;
            history = less;
            isShorter = true;
        }
        if (!isShorter || trials <= 0) length /= 2;
    }
    return history;
}

/// The first lines in which two texts differ, and what stands before them.
std::string difference(const std::vector<std::string>& plain,
                       const std::vector<std::string>& kernel)
{
    const auto [first, second] = std::ranges::mismatch(plain, kernel);
    std::string text;
    for (auto line = first - std::min<std::ptrdiff_t>(kLinesOfContext, first - plain.begin());
         line != first; ++line)
        text += "  " + *line + "\n";
    text += "plain:  " + (first == plain.end() ? "" : *first) + "\n";
    text += "kernel: " + (second == kernel.end() ? "" : *second) + "\n";
    return text;
}

std::string described(const History& history, Streams& streams)
{
    std::ostringstream text;
    text << "by these moves:\n";
    for (const Move& move : history) text << "  " << move << "\n";
    const Played plain = play(history, &makeWalkedPlainly, Transcript::Text, streams);
    const Played kernel =
        play(beginningOf(history, plain), &makeWalkedByKernel, Transcript::Text, streams);
    text << difference(plain.lines, kernel.lines);
    return text.str();
}

/// \return what is different; empty if nothing is.
std::string gameOf(std::uint64_t seed, Temper temper, Streams& streams)
{
    const History history = historyOf(seed, temper);
    if (isSame(history, streams)) return {};
    return "the walks differ in history " + std::to_string(seed) + ", " +
           described(shortened(history, streams), streams);
}

void playGames(Temper temper, int games)
{
    const auto seed =
        *rc::gen::noShrink(rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<std::uint64_t>()));
    std::string difference;
    {
        Streams streams;
        for (int game = 0; game < games && difference.empty(); ++game)
            difference = gameOf(seed + static_cast<std::uint64_t>(game), temper, streams);
    }
    if (!difference.empty()) RC_FAIL(difference);
}

// Several games a case: most of what one costs is to make networks up.

RC_GTEST_PROP(WalkEquality, IsThatOfThePlainWalkWhereObjectsOnlyUpdate, ())
{
    playGames(Temper::Calm, 4);
}

RC_GTEST_PROP(WalkEquality, IsThatOfThePlainWalkWhateverHappensInside, ())
{
    playGames(Temper::Wild, 4);
}

RC_GTEST_PROP(WalkEquality, SaysWhatThePlainWalkSays, ())
{
    playGames(Temper::Talking, 1);
}

} // namespace
} // namespace QuorlTest::Walks
