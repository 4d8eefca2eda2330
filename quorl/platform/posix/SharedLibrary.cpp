#include <quorl/platform/SharedLibrary.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <set>
#include <utility>

namespace Tolmen::Platform
{
namespace
{

/// How many objects here hold the file of a path, and the files that stayed though none does.
struct Loaded
{
    std::map<std::string, int> owners;
    std::set<std::string> residents;
};

Loaded& theLoaded()
{
    static auto& loaded = *new Loaded; // libraries are let go of until the very end
    return loaded;
}

/// A name without a separator would be searched along the path of libraries.
std::string pathForLoader(const std::string& path)
{
    return path.find('/') == std::string::npos ? "./" + path : path;
}

class Descriptor
{
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (number_ >= 0) ::close(number_);
    }
    operator int() const { return number_; }

private:
    const int number_;
};

bool copyBytes(int from, int to)
{
    struct stat status = {};
    if (::fstat(from, &status) != 0) return false;
    for (off_t left = status.st_size; left > 0;)
    {
        const ssize_t sent = ::sendfile(to, from, nullptr, static_cast<std::size_t>(left));
        if (sent <= 0) return false;
        left -= sent;
    }
    return true;
}

/// A path to a file of this process that no library was loaded from before. The system takes a
/// library for loaded if only its path is the same, and numbers of files come back; so each path
/// says how many there were, in steps that lead nowhere: "/" for a bit of 0, "/." for one of 1.
std::string freshPathTo(const Descriptor& file)
{
    static unsigned count = 0;
    std::string path = "/proc/self/fd";
    for (unsigned bits = ++count; bits != 0; bits /= 2) path += bits % 2 ? "/." : "/";
    return path + "/" + std::to_string(file);
}

/// Loads a copy that has no name in the file system.
void* loadCopy(const std::string& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const Descriptor copy(::memfd_create("module", MFD_CLOEXEC));
    if (file < 0 || copy < 0 || !copyBytes(file, copy)) return nullptr;
    return ::dlopen(freshPathTo(copy).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* load(const std::string& path)
{
    if (theLoaded().residents.contains(path))
        if (void* const copy = loadCopy(path)) return copy;
    return ::dlopen(pathForLoader(path).c_str(), RTLD_NOW | RTLD_LOCAL);
}

bool isStillThere(const std::string& path)
{
    void* const present = ::dlopen(pathForLoader(path).c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (present) ::dlclose(present); // takes back the share that the question has taken
    return present != nullptr;
}

std::string lastError()
{
    const char* const text = ::dlerror();
    return text ? text : "";
}

} // namespace

SharedLibrary::SharedLibrary(const std::string& path) : path_(path)
{
    if (path.empty()) // would stand for the program itself
    {
        error_ = std::strerror(ENOENT);
        return;
    }
    handle_ = load(path);
    if (!handle_)
        error_ = lastError();
    else
        ++theLoaded().owners[path];
}

SharedLibrary::~SharedLibrary()
{
    if (!handle_) return;
    ::dlclose(handle_);
    Loaded& loaded = theLoaded();
    if (--loaded.owners[path_] > 0) return;
    loaded.owners.erase(path_);
    if (isStillThere(path_)) loaded.residents.insert(path_);
}

void* SharedLibrary::symbol(const std::string& name) const
{
    if (!handle_) return nullptr;
    void* const found = ::dlsym(handle_, name.c_str()); // looks in its dependencies, too
    if (!found) return nullptr;
    Dl_info place = {};
    link_map* definer = nullptr;
    link_map* own = nullptr;
    void* extra = nullptr;
    if (::dladdr1(found, &place, &extra, RTLD_DL_LINKMAP) == 0) return nullptr;
    definer = static_cast<link_map*>(extra);
    if (::dlinfo(handle_, RTLD_DI_LINKMAP, static_cast<void*>(&own)) != 0) return nullptr;
    return definer == own ? found : nullptr;
}

} // namespace Tolmen::Platform
