#include <quorl/registry/VManagedDomainObject.h>
#include <tests/model/At.h>
#include <tests/model/Moves.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/EmptyDomain.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// A domain of the registry against a plain table of names and a plain list of priorities.
namespace QuorlTest
{
namespace
{

using Quorl::RefPtr;
using Quorl::VManagedObject;
using Quorl::WeakPtr;

constexpr int kNobody = -1;

class Member final : public Quorl::VManagedDomainObject<Member>
{
public:
    Member(const std::string& wantedName, int givenPriority, std::vector<bool>& ended, int number)
        : ended_(ended), number_(at(number))
    {
        insert(wantedName, givenPriority);
    }
    ~Member() override { ended_[number_] = true; }

private:
    std::vector<bool>& ended_;
    const std::size_t number_;
};

struct Kinds
{
    enum Kind : int
    {
        Insert,
        Release,     ///< the test lets go of an object
        Remove,      ///< an object, by itself
        RemoveName,  ///< from outside
        Destroy,     ///< an object, though others have handles of it
        SetPriority, ///< of an object
        Unload,      ///< a module
        Visit,       ///< a range of priorities, for some objects
        kKinds,
    };
    static constexpr const char* kNames[] = {"Insert",  "Release",     "Remove", "RemoveName",
                                             "Destroy", "SetPriority", "Unload", "Visit"};
};

using Move = MoveOf<Kinds>;

struct Entry
{
    int object;
    std::string module;
};

struct Object
{
    std::string name;
    int priority;
    bool isEnded = false;
    bool isHeld = true; ///< by the test
    bool hasDomain = true;
};

/// The table and the list.
class Model
{
public:
    bool isLive(const std::string& name) const
    {
        const auto entry = entries.find(name);
        return entry != entries.end() && entry->second.object != kNobody;
    }

    std::string freeName(const std::string& name) const
    {
        std::string candidate = name;
        for (int number = 1; isLive(candidate); ++number)
        {
            candidate = name + std::to_string(number % 10);
            if (number > 9) candidate += std::to_string(number / 10 % 10);
        }
        return candidate;
    }

    int insert(const std::string& name, int priority, const std::string& module)
    {
        const int number = static_cast<int>(objects.size());
        const std::string given = freeName(name);
        objects.push_back({given, priority});
        entries.try_emplace(given, Entry{kNobody, module}).first->second.object = number;
        enter(given, priority);
        return number;
    }

    bool removeName(const std::string& name)
    {
        erasePriority(name);
        const auto entry = entries.find(name);
        if (entry == entries.end()) return false;
        const int object = entry->second.object;
        entries.erase(entry);
        settle(object);
        return true;
    }

    bool remove(int number)
    {
        Object& object = objects[at(number)];
        return std::exchange(object.hasDomain, false) && removeName(object.name);
    }

    void setPriority(int number, int priority)
    {
        Object& object = objects[at(number)];
        erasePriority(object.name);
        enter(object.name, priority);
        object.priority = priority;
    }

    std::vector<int> unload(const std::string& module)
    {
        std::vector<int> removed;
        for (auto& [name, entry] : entries)
        {
            if (entry.module != module) continue;
            removed.push_back(entry.object);
            settle(std::exchange(entry.object, kNobody));
        }
        return removed;
    }

    void destroy(int number)
    {
        for (auto& [name, entry] : entries)
            if (entry.object == number) entry.object = kNobody;
        objects[at(number)].isEnded = true;
        objects[at(number)].isHeld = false;
    }

    void release(int number)
    {
        objects[at(number)].isHeld = false;
        settle(number);
    }

    std::map<std::string, Entry> entries;
    std::vector<std::pair<int, std::string>> priorities; // ascending, equal ones as they came
    std::vector<Object> objects;

private:
    void enter(const std::string& name, int priority)
    {
        const auto place =
            std::ranges::upper_bound(priorities, priority, {}, &std::pair<int, std::string>::first);
        priorities.emplace(place, priority, name);
    }

    void erasePriority(const std::string& name)
    {
        const auto line = std::ranges::find(priorities, name, &std::pair<int, std::string>::second);
        if (line != priorities.end()) priorities.erase(line);
    }

    /// An object ends when neither the registry nor the test has it.
    void settle(int number)
    {
        if (number == kNobody) return;
        const bool isRegistered = std::ranges::any_of(
            entries, [&](const auto& entry) { return entry.second.object == number; });
        objects[at(number)].isEnded |= !isRegistered && !objects[at(number)].isHeld;
    }
};

using Visited = std::vector<std::tuple<int, const VManagedObject*, std::string>>;

class Game
{
public:
    ~Game() { emptyDomain(typeid(Member)); }

    void play(const std::vector<Move>& moves)
    {
        ended_.reserve(moves.size());
        for (const Move& move : moves)
        {
            if (move.kind == Move::Insert || !objects_.empty()) perform(move);
            compare();
        }
    }

private:
    int someObject(int number) const { return number % static_cast<int>(objects_.size()); }
    const VManagedObject* pointerOf(int number) const
    {
        return number == kNobody ? nullptr : pointers_[at(number)];
    }

    void perform(const Move& move)
    {
        const std::string module = move.c == 0 ? "" : "model " + std::to_string(move.c);
        const std::string name = "model member " + std::to_string(move.b % 4);
        switch (move.kind)
        {
            case Move::Insert: insert(name, move.a, module); return;
            case Move::RemoveName:
                removeName(move.c % 2 == 0 ? name : model_.objects[at(someObject(move.a))].name);
                return;
            case Move::Unload: unload(module); return;
            case Move::Visit: visit(move.a - 6, move.b - 6, move.c); return;
            default: break;
        }
        const int number = someObject(move.a);
        if (model_.objects[at(number)].isEnded) return;
        WeakPtr<VManagedObject> object = objects_[at(number)];
        switch (move.kind)
        {
            case Move::Release:
                held_[at(number)] = RefPtr<VManagedObject>();
                model_.release(number);
                break;
            case Move::Remove: remove(number); break;
            case Move::Destroy:
                delete object.rawptr();
                model_.destroy(number);
                break;
            default:
                object->setPriority(move.b - 6);
                model_.setPriority(number, move.b - 6);
                break;
        }
    }

    void insert(const std::string& name, int priority, const std::string& module)
    {
        const int number = model_.insert(name, priority - 6, module);
        ended_.push_back(false);
        VManagedObject::CurrentLoadModule = module;
        held_.emplace_back(new Member(name, priority - 6, ended_, number));
        VManagedObject::CurrentLoadModule.clear();
        objects_.emplace_back(held_.back());
        pointers_.push_back(held_.back().rawptr());
    }

    void remove(int number)
    {
        const WeakPtr<VManagedObject> object = objects_[at(number)];
        const bool hadDomain = object->domainMap != nullptr;
        RC_ASSERT(hadDomain == model_.objects[at(number)].hasDomain);
        bool answer = false;
        const std::string said = outputOf([&] { answer = object->VManagedObject::remove(); });
        const bool expected = model_.remove(number);
        RC_ASSERT(answer == expected);
        RC_ASSERT(said == (hadDomain && !expected
                               ? "Could not find " + model_.objects[at(number)].name + "...\n"
                               : ""));
    }

    void removeName(const std::string& name)
    {
        bool answer = false;
        const std::string said =
            outputOf([&] { answer = VManagedObject::remove(typeid(Member), name); });
        const bool expected = model_.removeName(name);
        RC_ASSERT(answer == expected);
        RC_ASSERT(said == (expected ? "" : "Could not find " + name + "...\n"));
    }

    void unload(const std::string& module)
    {
        if (module.empty()) return; // of which others are as well
        struct Note final : VManagedObject::VRemoveItem
        {
            void removeItem(const std::string& /*module*/,
                            const RefPtr<VManagedObject>& object) override
            {
                removed.push_back(object ? object.rawptr() : nullptr);
            }
            std::vector<const VManagedObject*> removed;
        } note;
        VManagedObject::UnloadVModule(module, note);
        std::vector<const VManagedObject*> expected;
        for (const int number : model_.unload(module)) expected.push_back(pointerOf(number));
        RC_ASSERT(note.removed == expected);
    }

    void visit(int from, int to, int most)
    {
        struct Note final : Quorl::VManagedObjectIterator
        {
            bool apply(int priority, const RefPtr<VManagedObject>& object,
                       const std::string& name) override
            {
                visited.emplace_back(priority, object.rawptr(), name);
                return static_cast<int>(visited.size()) <= most;
            }
            Visited visited;
            int most = 0;
        } note;
        note.most = most;
        const int answer = VManagedObject::traverse(typeid(Member), note, from, to);
        Visited expected;
        for (const auto& [priority, name] : model_.priorities)
            if (priority >= from && priority < to && model_.isLive(name) &&
                static_cast<int>(expected.size()) <= most)
                expected.emplace_back(priority, pointerOf(model_.entries[name].object), name);
        RC_ASSERT(note.visited == expected);
        RC_ASSERT(answer == std::min(most, static_cast<int>(expected.size())));
    }

    void compare()
    {
        RC_ASSERT(VManagedObject::size(typeid(Member)) == static_cast<int>(model_.entries.size()));
        visit(VManagedObject::kFirstPriority, VManagedObject::kLastPriority, 1000);
        compareEntries();
        for (std::size_t number = 0; number < objects_.size(); ++number) compareObject(number);
    }

    void compareEntries() const
    {
        std::vector<std::tuple<std::string, const VManagedObject*, std::string>> found;
        VManagedObject::iterateModules([&](const std::string& module,
                                           const RefPtr<VManagedObject>& object,
                                           const std::string& name) {
            if (name.starts_with("model member"))
                found.emplace_back(module, object ? object.rawptr() : nullptr, name);
            return true;
        });
        std::vector<std::tuple<std::string, const VManagedObject*, std::string>> expected;
        for (const auto& [name, entry] : model_.entries)
            expected.emplace_back(entry.module, pointerOf(entry.object), name);
        RC_ASSERT(found == expected);
    }

    void compareObject(std::size_t number) const
    {
        const Object& expected = model_.objects[number];
        RC_ASSERT(ended_[number] == expected.isEnded);
        if (expected.isEnded) return;
        const WeakPtr<VManagedObject>& object = objects_[number];
        RC_ASSERT(object->getName() == expected.name);
        RC_ASSERT(object->priority == expected.priority);
        RC_ASSERT((object->domainMap != nullptr) == expected.hasDomain);
        const auto entry = model_.entries.find(expected.name);
        RC_ASSERT(object->getLoadModule() ==
                  (entry == model_.entries.end() ? "(creator not found)" : entry->second.module));
        if (entry != model_.entries.end() && entry->second.object != kNobody)
        {
            const RefPtr<VManagedObject> found =
                VManagedObject::find(typeid(Member), expected.name);
            RC_ASSERT(found.rawptr() == pointerOf(entry->second.object));
        }
    }

    Model model_;
    std::vector<bool> ended_;
    std::vector<RefPtr<VManagedObject>> held_;
    std::vector<WeakPtr<VManagedObject>> objects_;
    std::vector<const VManagedObject*> pointers_;
};

RC_GTEST_PROP(RegistryModel, KeepsWhatATableKeeps, ())
{
    const auto kind = rc::gen::weightedOneOf<int>(
        {{4, rc::gen::just<int>(Move::Insert)}, {6, rc::gen::inRange<int>(0, Move::kKinds)}});
    const auto number = rc::gen::inRange(0, 13);
    Game().play(anyMoves<Move>(kind, number, number, rc::gen::inRange(0, 4)));
}

} // namespace
} // namespace QuorlTest
