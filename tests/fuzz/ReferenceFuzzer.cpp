#include <quorl/modules/DownloadHandler.h>
#include <quorl/modules/VLoader.h>
#include <quorl/objects/VObject.h>

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace
{

using Quorl::RefPtr;
using std::string;

void require(bool isTrue)
{
    if (!isTrue) std::abort();
}

/// What a reference means, by a plain reading of the rules.
struct Meaning
{
    explicit Meaning(const string& reference) : file(reference)
    {
        const std::size_t digits =
            std::min(reference.find_first_not_of("0123456789"), reference.size());
        if (digits == 0) return;
        size = std::stoll(reference.substr(0, digits));
        if (digits == reference.size() || reference[digits] != '@') return;
        location = reference.substr(digits + 1);
        const string mark = "@http://";
        if (location->starts_with("http://"))
            file = location->substr(location->rfind('/') + 1);
        else if (const auto place = location->find(mark); place != string::npos)
        {
            file = location->substr(0, place);
            location = location->substr(place + 1);
        }
    }

    bool isRemote() const { return location && !file.empty(); }

    string file;
    long long size = 0;
    std::optional<string> location;
};

std::optional<Meaning> expected;

/// Is asked for what the reference means, if at all.
struct Handler final : Quorl::DownloadHandler
{
    bool download(const string& url, long long size, const string& file,
                  long long localsize) override
    {
        require(expected->isRemote() && url == *expected->location && size == expected->size &&
                file == expected->file && (localsize != size || localsize == 0));
        return true;
    }
};

const char* const kReason = "it ends in a bad letter";

/// Takes files whose names end in letters, and fails to load those of 'a' to 'm'.
struct Loader final : Quorl::VLoader
{
    Loader() : VLoader("some letters", 0) {}

    static bool takes(const string& file) { return !file.empty() && file.back() >= 'a'; }
    static bool loads(const string& file) { return file.back() > 'm'; }

    LoadSuccess check(const string& file) override
    {
        require(file == expected->file);
        return {"", "", takes(file) ? "" : kReason};
    }
    RefPtr<Quorl::VManagedObject> load(LoadSuccess& success, const string& file,
                                       const string& /*name*/) override
    {
        require(file == expected->file && takes(file));
        if (!loads(file)) success.reason = kReason;
        return {};
    }
};

string expectedReason(const string& reference)
{
    if (reference.empty()) return "No file name or URL given.";
    if (!Loader::takes(expected->file)) return "Unsupported file extension or format.";
    return Loader::loads(expected->file) ? "" : kReason;
}

} // namespace

/// Any reference is resolved by the rules, and taken or not by its file's name. A size may be out
/// of range.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const RefPtr<Loader> loader(new Loader);
    Quorl::DownloadHandler::setDownloadHandler(new Handler);
    const string reference(reinterpret_cast<const char*>(data), size);
    Quorl::VLoader::LoadSuccess success;
    expected.reset();
    try
    {
        expected.emplace(reference);
    }
    catch (const std::out_of_range&)
    {
    }
    try
    {
        require(!Quorl::VLoader::Load(success, reference, ""));
        require(expected && success.reason == expectedReason(reference));
    }
    catch (const std::out_of_range& error)
    {
        require(!expected && error.what() == std::string_view("stoll"));
    }
    return 0;
}
