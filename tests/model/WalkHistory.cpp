#include <tests/model/WalkHistory.h>

#include <tests/model/At.h>
#include <tests/model/EvaluationModel.h>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <span>
#include <vector>

namespace QuorlTest::Walks
{
namespace
{

constexpr int kMostPaths = 150; // to the inputs of one object
constexpr int kAny = 4096;      // numbers that are brought into range

struct Weight
{
    Move::Kind kind;
    int weight;
};

constexpr Weight kCalm[] = {
    {Move::Repeat, 40},         {Move::Request, 20},      {Move::Again, 4},
    {Move::Copied, 2},          {Move::Touch, 18},        {Move::SetText, 3},
    {Move::Attach, 4},          {Move::Empty, 1},         {Move::WriteParameter, 1},
    {Move::WriteSource, 1},     {Move::WriteAge, 2},      {Move::WriteParameterAge, 2},
    {Move::WriteConnection, 2}, {Move::Ready, 2},         {Move::Locality, 2},
    {Move::TouchState, 1},      {Move::WriteState, 1},    {Move::NewSlot, 1},
    {Move::DropSlot, 1},        {Move::WriteExecutor, 1}, {Move::WriteTrace, 1},
    {Move::Leave, 1},           {Move::Validator, 1},     {Move::Graph, 1},
    {Move::Release, 1},         {Move::Classes, 1},       {Move::WriteSlot, 1},
    {Move::Listen, 1},          {Move::WriteLentState, 1}};

constexpr Weight kWild[] = {{Move::Repeat, 24},
                            {Move::Request, 24},
                            {Move::Again, 5},
                            {Move::Copied, 3},
                            {Move::Touch, 10},
                            {Move::SetText, 3},
                            {Move::Attach, 6},
                            {Move::Empty, 2},
                            {Move::WriteParameter, 2},
                            {Move::WriteSource, 2},
                            {Move::WriteSlot, 2},
                            {Move::WriteAge, 4},
                            {Move::WriteParameterAge, 3},
                            {Move::WriteConnection, 4},
                            {Move::TouchState, 2},
                            {Move::WriteState, 3},
                            {Move::WriteLentState, 1},
                            {Move::Ready, 4},
                            {Move::Locality, 4},
                            {Move::Classes, 3},
                            {Move::Release, 5},
                            {Move::WriteTrace, 3},
                            {Move::WriteExecutor, 3},
                            {Move::DropSlot, 2},
                            {Move::NewSlot, 2},
                            {Move::Leave, 1},
                            {Move::Verbosity, 1},
                            {Move::Listen, 2},
                            {Move::Validator, 2},
                            {Move::Function, 2},
                            {Move::ChangeTicket, 2},
                            {Move::Behave, 8},
                            {Move::Graph, 2},
                            {Move::InHook, 4}};

constexpr Weight kActs[] = {{Move::Look, 12},           {Move::Touch, 8},
                            {Move::SetText, 2},         {Move::Attach, 5},
                            {Move::Empty, 2},           {Move::WriteParameter, 2},
                            {Move::WriteSource, 2},     {Move::WriteSlot, 2},
                            {Move::WriteAge, 12},       {Move::WriteParameterAge, 4},
                            {Move::WriteConnection, 8}, {Move::TouchState, 3},
                            {Move::WriteState, 3},      {Move::Ready, 3},
                            {Move::Locality, 3},        {Move::Classes, 2},
                            {Move::Release, 3},         {Move::WriteTrace, 3},
                            {Move::WriteExecutor, 3},   {Move::DropSlot, 2},
                            {Move::NewSlot, 3},         {Move::Leave, 2},
                            {Move::Verbosity, 1},       {Move::Listen, 1},
                            {Move::Validator, 1},       {Move::ChangeTicket, 2},
                            {Move::Cancel, 3},          {Move::Throw, 4},
                            {Move::Request, 8},         {Move::Graph, 2},
                            {Move::WriteLentState, 3}};

/// Makes up one history.
class Author
{
public:
    Author(std::uint64_t seed, Temper temper)
        : random_(seed), isTalking_(temper == Temper::Talking),
          isWild_(temper == Temper::Wild || (isTalking_ && chance(2)))
    {
    }

    History write()
    {
        if (isTalking_) add(Move::Verbosity, 0, 4 + below(8), 1);
        makeObjects();
        wire();
        if (isTalking_) add(Move::Verbosity, 0, 4 + below(8), below(16));
        giveCharacter();
        const int moves = 8 + below(24);
        for (int move = 0; move < moves; ++move)
            live(isWild_ ? std::span<const Weight>(kWild) : kCalm);
        return history_;
    }

private:
    int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }
    void add(Move::Kind kind, int a, int b, int c) { history_.emplace_back(kind, a, b, c); }
    int of(std::initializer_list<int> numbers)
    {
        return numbers.begin()[below(static_cast<int>(numbers.size()))];
    }

    Move::Kind any(std::span<const Weight> weights)
    {
        int all = 0;
        for (const Weight& entry : weights) all += entry.weight;
        int place = below(all);
        for (const Weight& entry : weights)
            if ((place -= entry.weight) < 0) return entry.kind;
        return Move::Look;
    }

    // The network

    void makeObjects()
    {
        const bool isSmall = chance(3);
        objects_ = 1 + below(isSmall ? 4 : 10);
        const bool isPlain = !isWild_ || chance(2);
        const bool areValidated = chance(6); // each of them is walked on every path
        for (int number = 0; number < objects_; ++number)
            add(Move::NewObject,
                isPlain || chance(2) ? of({0, 0, 0, 0, 0, 1}) : below(kObjectKinds),
                areValidated && chance(2) ? 1 : 0, 0);
        paths_.assign(at(objects_), 1);
    }

    void wire()
    {
        switch (below(6))
        {
            case 0: wireChain(); break;
            case 1: wireLayers(); break;
            case 2: wireCycles(); break;
            case 3: wireSparsely(); break;
            default: wireDensely(); break;
        }
        for (int count = below(3); count > 0; --count) connect(below(objects_), -1);
    }

    void wireChain()
    {
        for (int number = 1; number < objects_; ++number) connect(number, number - 1);
    }

    /// Each object takes from all of the layer before.
    void wireLayers()
    {
        const int width = 1 + below(3);
        for (int number = width; number < objects_; ++number)
            for (int source = (number / width - 1) * width; source < number / width * width;
                 ++source)
                connect(number, source);
    }

    void wireCycles()
    {
        const int among = std::min(objects_, 5);
        for (int number = 0; number < objects_; ++number)
            for (int count = 1 + below(2); count > 0; --count) connect(number, below(among));
    }

    void wireSparsely()
    {
        for (int number = 1; number < objects_; ++number)
            for (int count = below(3); count > 0; --count) connect(number, below(number));
    }

    /// With inputs that skip, and several on one source.
    void wireDensely()
    {
        for (int number = 1; number < objects_; ++number)
            for (int count = 1 + below(4); count > 0; --count)
                connect(number, number - 1 - below(std::min(number, 3)));
    }

    /// \param source -1 for an input with a parameter of its own.
    void connect(int object, int source)
    {
        constexpr int kPlainNames = 4;
        if (source >= 0 && source != object)
        {
            if (paths_[at(object)] + paths_[at(source)] > kMostPaths) return;
            paths_[at(object)] += paths_[at(source)];
        }
        const int level = chance(4) ? below(3) : 0;
        const int flavour = chance(8) ? below(8) : below(kPlainNames);
        add(Move::NewSlot, object, level + 3 * (flavour + 8 * below(3)), source + 1);
    }

    // Its objects

    void giveCharacter()
    {
        for (int number = 0; number < objects_; ++number)
        {
            if (chance(2)) add(Move::Behave, number, kOutput, of({1, 1, 1, 2, 3}));
            if (chance(3)) add(Move::Function, number, below(2), 0);
            if (chance(12)) add(Move::Ready, number, below(6), 0);
            if (!isWild_) continue;
            for (int count = below(3); count > 0; --count) misbehave(number);
            if (chance(2)) act(number);
        }
        if (chance(4)) add(Move::Locality, below(kAny), 0, 0);
        if (chance(8)) add(Move::Listen, 0, 0, 0);
    }

    void misbehave(int number)
    {
        const int aspect = below(kAspects);
        const int how = below(choicesOf(aspect));
        add(Move::Behave, number, aspect, how);
    }

    static int choicesOf(int aspect)
    {
        switch (aspect)
        {
            case kOutcome: return Evaluation::kOutcomes;
            case kOutput: return 4;
            case kAnswer: return kAnswers;
            case kLies: return 5;
            case kIgnored: return 16;
            default: return 2;
        }
    }

    void act(int number)
    {
        add(Move::InHook, number, chance(2) ? static_cast<int>(kInUpdate) : below(kHooks),
            below(3));
        const Move::Kind kind = any(kActs);
        add(kind, below(kAny), below(kAny), kind == Move::Request ? how() : below(kAny));
    }

    // What happens to it

    /// Which request: most are of the plain kind.
    int how() { return chance(5) ? below(kAny) : 16 * below(2); }

    void live(std::span<const Weight> weights)
    {
        const Move::Kind kind = any(weights);
        switch (kind)
        {
            case Move::Request:
            case Move::Again:
            case Move::Copied:
                // Most walks begin at the end of the network.
                add(kind, chance(2) ? objects_ - 1 : below(objects_),
                    chance(3) ? below(kPools) : pool_, how());
                break;
            case Move::Behave: misbehave(below(objects_)); break;
            case Move::InHook: act(below(objects_)); break;
            default: add(kind, below(kAny), below(kAny), below(kAny));
        }
    }

    std::mt19937_64 random_;
    const bool isTalking_;
    const bool isWild_;
    const int pool_ = below(kPools); // where most walks are
    int objects_ = 0;
    std::vector<int> paths_; // upstream of each object
    History history_;
};

} // namespace

History historyOf(std::uint64_t seed, Temper temper)
{
    return Author(seed, temper).write();
}

} // namespace QuorlTest::Walks
