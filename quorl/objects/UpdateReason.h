#pragma once

#include <quorl/Forward.h>

namespace Quorl
{

/// Why an object has to run. The last one to demand it wins; that only serves the logs, so the
/// words are put together when somebody wants to read them.
class UpdateReason
{
public:
    explicit operator bool() const { return words_ != nullptr; } ///< whether there is one

    void inputIsNewer(const string& input) { be(inputNewer, input); }
    void pureInputIsNewer(const string& input) { be(pureInputNewer, input); }
    void sourceWasModified(const string& input, const string& source)
    {
        be(sourceModified, input);
        source_ = source;
    }
    void stateIsOld() { be(stateOld, ""); }
    void connectionsHaveChanged() { be(connectionsChanged, ""); }

    string text() const { return words_ ? words_(*this) : string(); }

private:
    using Words = string (*)(const UpdateReason&);

    void be(Words words, const string& input)
    {
        words_ = words;
        input_ = input;
    }

    static string inputNewer(const UpdateReason& why)
    {
        return "Input " + why.input_ + " is newer";
    }
    static string pureInputNewer(const UpdateReason& why)
    {
        return "Pure Input " + why.input_ + " is newer";
    }
    static string sourceModified(const UpdateReason& why)
    {
        return "Input Object " + why.source_ +
               "->request() returned true, it provides input param " + why.input_;
    }
    static string stateOld(const UpdateReason&)
    {
        return "Object local state is old, object needs to update";
    }
    static string connectionsChanged(const UpdateReason&)
    {
        return "Connections/Parameters have changed";
    }

    Words words_ = nullptr;
    string input_; // names, as they were then
    string source_;
};

} // namespace Quorl
