#include <quorl/kit/HostQueue.h>
#include <quorl/kit/Module.h>
#include <quorl/kit/Network.h>
#include <quorl/kit/TypedSlot.h>
#include <quorl/kit/VCreator.h>
#include <quorl/modules/ZelmSaver.h>
#include <quorl/services/VActionNotifier.h>
#include <quorl/values/ValueActionBase.h>
#include <zelm/network/tests/TestObjects.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace Zelm
{
namespace
{

/// Fails in the way that it is told.
class Failing final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        std::puts("this is not what the program prints");
        const std::string way = way_(request);
        if (way == "throw") throw std::runtime_error("there is nothing to be done");
        if (way == "status") throw ExecutionStatus(ExecutionStatus::Failed, "the disc is full");
        if (way == "number") throw 42;
        if (way == "false") return false;
        done_.set(request, value_(request));
        return true;
    }

private:
    const InputSlot<std::string> way_{*this, "way", {}, perContext()};
    const InputSlot<double> value_{*this, "value", 0.0, perContext()};
    const OutputSlot<double> done_{*this, "done"};
};

/// Refuses the number 13 as its own code does, and 42 in no words at all.
class Particular final : public Quorl::VObject
{
public:
    Particular(const std::string& wantedName, int givenPriority,
               const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted)
        : VObject(wantedName, givenPriority, wanted)
    {
        number_.slot()->Parameter->AddAction(Quorl::RefPtr<Quorl::ValueActionBase>(new Check));
    }

    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override { return true; }

private:
    struct Check final : Quorl::ValueActionBase
    {
        void action(const Quorl::RefPtr<Quorl::VValueBase>& value,
                    const Quorl::WeakPtr<Quorl::ValuePool>& /*pool*/,
                    const Quorl::ValueNotifierList* /*caller*/,
                    const Quorl::ValueMap* /*changes*/) override
        {
            if (value->Text() == "13") throw std::invalid_argument("13 is not for me");
            if (value->Text() == "42") throw 42;
        }
    };

    const InputSlot<double> number_{*this, "number", 0.0};
};

/// Writes a text, or says that it cannot.
class TextSaver final : public Quorl::ZelmSaver
{
public:
    explicit TextSaver(bool works) : ZelmSaver(works ? ".txt" : ".bad"), works_(works) {}
    bool save(const std::string& file) override
    {
        std::ofstream written(file);
        return (written << "saved\n").flush() && works_;
    }

private:
    const bool works_;
};

/// Says that it has written what it has not.
class NoSaver final : public Quorl::ZelmSaver
{
public:
    NoSaver() : ZelmSaver(".none") {}
    bool save(const std::string& /*file*/) override { return true; }
};

class Savable final : public Quorl::VObject
{
public:
    Savable(const std::string& wantedName, int givenPriority,
            const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted)
        : VObject(wantedName, givenPriority, wanted)
    {
        addSaver("text", new TextSaver(true));
        addSaver("bad", new TextSaver(false));
        addSaver("none", new NoSaver);
    }
};

/// Has something done in the next turn of the main loop, once.
class Later final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& request, double /*precision*/) override
    {
        if (finer_(request) == 0.0)
            Quorl::HostQueue::post(
                [this, pool = request.Pool] { Quorl::setText(*this, "finer", "1", pool); });
        return true;
    }

private:
    const InputSlot<double> finer_{*this, "finer", 0.0, perContext()};
};

/// Works until somebody asks for a stop, and tells that it has begun by a file "begun".
class Endless final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override
    {
        std::ofstream("begun") << "begun\n";
        const unsigned long id = Quorl::VActionNotifier::getNewProgressID();
        constexpr int kSteps = 60'000; // by which it ends if nobody does
        for (int step = 0; step < kSteps; ++step)
        {
            if (!Quorl::VActionNotifier::ProgressInfo(id, "without end", step, kSteps))
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        throw std::runtime_error("nobody asked for a stop");
    }
};

/// Warns, and does nothing else.
class Warning final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override
    {
        Quorl::VActionNotifier::Warning("it will rain");
        return true;
    }

private:
    const InputSlot<double> input_{*this, "input", 0.0, perContext()};
};

/// Takes its time, and tells that it has begun by a file "begun".
class Slow final : public Quorl::VObject
{
public:
    using VObject::VObject;

    bool update(Quorl::VRequest& /*request*/, double /*precision*/) override
    {
        std::ofstream("begun") << "begun\n";
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return true;
    }

private:
    const InputSlot<double> input_{*this, "input", 0.0, perContext()};
};

Quorl::VCreator<Failing> failing("Test/Failing");
Quorl::VCreator<Particular> particular("Test/Particular");
Quorl::VCreator<Slow> slow("Test/Slow");
Quorl::VCreator<Warning> warning("Test/Warning");
Quorl::VCreator<Endless> endless("Test/Endless");
Quorl::VCreator<Savable> savable("Test/Savable");
Quorl::VCreator<Later> later("Test/Later", {.summary = "Is done later",
                                            .author = "The Quorl authors",
                                            .applications = "Tests;More tests"});

} // namespace
} // namespace Zelm

ZELM_MODULE(hosttest)
{
    initialization.title = "For tests of the host";
    return std::getenv("HOSTTEST_REFUSES") == nullptr;
}
