#pragma once

#include <quorl/objects/VObject.h>
#include <quorl/objects/VRequest.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/ValuePool.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace Zelm
{

using Quorl::RefPtr;

/// An object that notes its updates, and keeps to what a prediction assumes.
class Actor final : public Quorl::VObject
{
public:
    Actor(const std::string& actorName, std::vector<std::string>& log);

    bool update(Quorl::VRequest& request, double precision) override;
    bool must_update(const Quorl::VRequest&, double) const override { return isDemanding; }

    /// An input with a parameter of its own.
    RefPtr<Quorl::VSlot> addInput(const std::string& slotName, bool isLocal);
    void addOutput(const std::string& slotName, bool isLocal);

    std::vector<RefPtr<Quorl::VSlot>> inputs;
    std::vector<RefPtr<Quorl::VParameter>> own; ///< of the inputs, whatever they show
    std::vector<RefPtr<Quorl::VParameter>> outputs;
    bool isDemanding = false;
    bool keepsState = false;

private:
    std::vector<std::string>& log_;
};

/// A small network that is changed and requested at random: which is told by a seed.
class RandomNetwork
{
public:
    explicit RandomNetwork(std::uint64_t seed);
    RandomNetwork(const RandomNetwork&) = delete;
    RandomNetwork& operator=(const RandomNetwork&) = delete;
    ~RandomNetwork();

    /// Changes something, and requests an object: once by what is foreseen, then really.
    /// \return what differs between the two accounts, or from what ran; empty if nothing does.
    std::string difference();

private:
    std::size_t below(std::size_t bound); ///< a random number
    bool isOneIn(std::size_t chances) { return below(chances) == 0; }
    Actor& anyActor();

    void change();
    void connect(Actor& actor);
    void touch(Actor& actor);
    void touchState(const Actor& actor);
    void occupy(Actor& actor);
    void request(Actor& actor);

    std::mt19937_64 random_;
    std::vector<std::string> log_;
    std::vector<RefPtr<Actor>> actors_;
    std::vector<RefPtr<Quorl::ValuePool>> contexts_;
    std::vector<std::unique_ptr<Quorl::VRequest>> others_; // that are inside of objects
};

} // namespace Zelm
