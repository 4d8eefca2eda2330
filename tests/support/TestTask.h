#pragma once

#include <quorl/kit/BackgroundTask.h>
#include <quorl/tasks/VTaskMessage.h>
#include <quorl/tasks/VThreadCreator.h>
#include <quorl/tasks/VThreadManager.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace QuorlTest
{

/// A task that does what a test tells it, and reads messages.
class TestTask final : public Quorl::BackgroundTask
{
public:
    explicit TestTask(std::function<void(TestTask&)> body = {}) : body_(std::move(body)) {}
    ~TestTask() override
    {
        if (whenDestroyed) whenDestroyed();
    }

    void run() override
    {
        if (body_) body_(*this);
    }

    using BackgroundTask::deliver;

    std::function<void()> whenDestroyed;

private:
    const std::function<void(TestTask&)> body_;
};

inline Quorl::RefPtr<TestTask> makeTask(std::function<void(TestTask&)> body = {})
{
    return Quorl::RefPtr<TestTask>(new TestTask(std::move(body)));
}

/// A message with a text.
class TestMessage final : public Quorl::VTaskMessage
{
public:
    explicit TestMessage(const std::string& words) : text(words) {}
    const std::string text;
};

inline Quorl::RefPtr<TestMessage> makeMessage(const std::string& text)
{
    return Quorl::RefPtr<TestMessage>(new TestMessage(text));
}

/// Notes what it is asked, and answers what it is told to.
class TestManager final : public Quorl::VThreadManager
{
public:
    bool start(const Quorl::RefPtr<Quorl::VTask>& task) override { return note("start", task); }
    bool wait(const Quorl::RefPtr<Quorl::VTask>& task) override { return note("wait", task); }
    bool isrunning(const Quorl::RefPtr<Quorl::VTask>& task) const override
    {
        return note("isrunning", task);
    }
    bool sendMessage(const Quorl::RefPtr<Quorl::VTask>& task,
                     const Quorl::RefPtr<Quorl::VTaskMessage>& message) override
    {
        const Quorl::RefPtr<TestMessage> known = message;
        return note("message " + known->text, task);
    }
    Quorl::WeakPtr<Quorl::VTask> CurrentThread() override { return current; }

    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }

    bool answer = true;
    Quorl::WeakPtr<Quorl::VTask> current;
    mutable std::vector<std::string> calls;
    mutable std::vector<Quorl::WeakPtr<Quorl::VTask>> tasks;

private:
    bool note(const std::string& call, const Quorl::RefPtr<Quorl::VTask>& task) const
    {
        calls.push_back(call);
        tasks.emplace_back(task);
        return answer;
    }
};

/// Brings a manager in for as long as it lives.
class TestThreads
{
public:
    explicit TestThreads(Quorl::VThreadManager& manager, const std::string& name = "test threads",
                         int priority = 0)
        : creator(new Creator(name, priority, manager))
    {
    }
    TestThreads(const TestThreads&) = delete;
    TestThreads& operator=(const TestThreads&) = delete;
    ~TestThreads() { creator->remove(); }

private:
    class Creator final : public Quorl::VThreadCreator
    {
    public:
        Creator(const std::string& creatorName, int givenPriority, Quorl::VThreadManager& manager)
            : VThreadCreator(creatorName, givenPriority, {}, nullptr), manager_(manager)
        {
        }
        Quorl::VThreadManager* getManager() override { return &manager_; }

    private:
        Quorl::VThreadManager& manager_;
    };

public:
    const Quorl::RefPtr<Quorl::VThreadCreator> creator;
};

} // namespace QuorlTest
