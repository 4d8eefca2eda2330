#include <quorl/modules/RemoteReference.h>

#include <quorl/foundation/BinaryFile.h>
#include <quorl/modules/DownloadHandler.h>

#include <cstdio>
#include <optional>

namespace Quorl
{
namespace
{

constexpr const char* kScheme = "http://";

/// A size in bytes, an at sign, and where the file is.
struct SizedLocation
{
    long long size;
    string location;
};

std::optional<SizedLocation> parse(const string& reference)
{
    if (reference.front() < '0' || reference.front() > '9') return std::nullopt;
    std::size_t end = 0;
    const long long size = std::stoll(reference, &end);
    if (end == reference.size() || reference[end] != '@') return std::nullopt;
    return SizedLocation{size, reference.substr(end + 1)};
}

/// Takes the local name off the location, or out of its end.
string takeLocalName(SizedLocation& remote, const string& reference)
{
    string& location = remote.location;
    if (location.starts_with(kScheme)) return location.substr(location.rfind('/') + 1);
    const auto at = location.find(string("@") + kScheme);
    if (at == string::npos) return reference;
    const string name = location.substr(0, at);
    location.erase(0, at + 1);
    return name;
}

/// \return nothing if the file cannot be opened.
std::optional<long long> sizeOf(const string& file)
{
    const Tolmen::OwnedFile open(std::fopen(file.c_str(), "rb"));
    if (!open) return std::nullopt;
    std::fseek(open.get(), 0, SEEK_END);
    std::perror("file seek"); // Deliberate: whether it failed or not.
    return std::ftell(open.get());
}

/// \return whether to go on with the file as it is.
bool download(const SizedLocation& remote, const string& file, long long localsize)
{
    const RefPtr<DownloadHandler> handler = DownloadHandler::getDownloadHandler();
    return !handler || handler->download(remote.location, remote.size, file, localsize);
}

void makeAvailable(const SizedLocation& remote, const string& file)
{
    std::optional<long long> localsize;
    do localsize = sizeOf(file);
    while (localsize != remote.size && !download(remote, file, localsize.value_or(0)));
}

} // namespace

string localFileOf(const string& reference)
{
    std::optional<SizedLocation> remote = parse(reference);
    if (!remote) return reference;
    const string file = takeLocalName(*remote, reference);
    if (!file.empty()) makeAvailable(*remote, file);
    return file;
}

} // namespace Quorl
