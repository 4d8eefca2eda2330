#include <quorl/platform/SharedLibrary.h>

#include <quorl/foundation/CastCache.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <utility>

namespace Tolmen::Platform
{
/// What was mapped for a path.
struct SharedLibrary::Image
{
    std::string openPath; ///< by which the system knows it
    void* handle;         ///< the same for all owners
    bool isShared;        ///< was mapped already, for another path
    int owners = 0;
};

namespace
{

using Image = SharedLibrary::Image;

/// The present image of each path, and the paths whose next one has to be a copy, as an earlier one
/// is still there.
struct Loaded
{
    using Images = std::map<std::string, std::shared_ptr<Image>>;

    Images images;
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

/// \return whether all was copied; if not, `errno` tells why.
bool copyBytes(int from, int to)
{
    struct stat status = {};
    if (::fstat(from, &status) != 0) return false;
    for (off_t left = status.st_size; left > 0;)
    {
        const ssize_t sent = ::sendfile(to, from, nullptr, static_cast<std::size_t>(left));
        if (sent == 0) errno = ENOEXEC; // the file has shrunk
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

void* open(const std::string& path)
{
    return ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

bool isPresent(void* handle)
{
    const auto& images = theLoaded().images;
    return std::any_of(images.begin(), images.end(),
                       [&](const auto& entry) { return entry.second->handle == handle; });
}

std::string lastError()
{
    const char* const text = ::dlerror();
    return text ? text : "";
}

/// What a path is loaded as, with a share of it for the caller, or the system's words for why there
/// can be none.
struct Found
{
    std::shared_ptr<Image> image;
    std::string error;
};

Found imageAt(const std::string& openPath)
{
    auto image = std::make_shared<Image>(Image{openPath, nullptr, false});
    image->handle = open(openPath);
    if (!image->handle) return {nullptr, lastError()};
    image->isShared = isPresent(image->handle);
    return {std::move(image), {}};
}

/// An image of a copy that has no name in the file system.
Found imageOfCopy(const std::string& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file < 0) return {nullptr, std::strerror(errno)};
    const Descriptor copy(::memfd_create("module", MFD_CLOEXEC));
    if (copy < 0 || !copyBytes(file, copy)) return {nullptr, std::strerror(errno)};
    return imageAt(freshPathTo(copy));
}

Found load(const std::string& path)
{
    Loaded& loaded = theLoaded();
    const auto present = loaded.images.find(path);
    if (present != loaded.images.end())
    {
        open(present->second->openPath); // another share
        return {present->second, {}};
    }
    Loaded::Images entry; // made ahead: what has run its initialisers is not to fail any more
    entry[path];
    // The file itself would be taken for the image that is still there, and run nothing.
    Found next = loaded.residents.contains(path) ? imageOfCopy(path) : imageAt(pathForLoader(path));
    if (next.image)
        loaded.images.insert(entry.extract(entry.begin())).position->second = next.image;
    return next;
}

bool isMapped(const std::string& loaderPath)
{
    void* const handle = ::dlopen(loaderPath.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle) return false;
    ::dlclose(handle); // takes back the share that the question has taken
    return true;
}

} // namespace

SharedLibrary::SharedLibrary(const std::string& path)
    : path_(path), loaderPath_(pathForLoader(path)), resident_{path}
{
    if (path.empty()) // would stand for the program itself
    {
        error_ = std::strerror(ENOENT);
        return;
    }
    Found next = load(path);
    image_ = std::move(next.image);
    error_ = std::move(next.error);
    if (image_) ++image_->owners;
}

SharedLibrary::~SharedLibrary()
{
    if (!image_) return;
    ::dlclose(image_->handle);
    theUnloadCount.fetch_add(1, std::memory_order_relaxed);
    if (--image_->owners > 0) return;
    Loaded& loaded = theLoaded();
    const auto present = loaded.images.find(path_);
    if (present != loaded.images.end() && present->second == image_) loaded.images.erase(present);
    // What runs when a file is mapped has run for this path, and is to run for the next one.
    if (!image_->isShared && isMapped(loaderPath_)) loaded.residents.merge(resident_);
}

void SharedLibrary::leaveBehind()
{
    Loaded& loaded = theLoaded();
    const auto present = loaded.images.find(path_);
    if (!image_ || present == loaded.images.end() || present->second != image_) return;
    loaded.images.erase(present);
    loaded.residents.merge(resident_);
}

void* SharedLibrary::symbol(const std::string& name) const
{
    if (!image_) return nullptr;
    void* const found = ::dlsym(image_->handle, name.c_str()); // looks in its dependencies, too
    if (!found) return nullptr;
    Dl_info place = {};
    link_map* definer = nullptr;
    link_map* own = nullptr;
    void* extra = nullptr;
    if (::dladdr1(found, &place, &extra, RTLD_DL_LINKMAP) == 0) return nullptr;
    definer = static_cast<link_map*>(extra);
    if (::dlinfo(image_->handle, RTLD_DI_LINKMAP, static_cast<void*>(&own)) != 0) return nullptr;
    return definer == own ? found : nullptr;
}

bool isCode(const void* address)
{
    Dl_info place = {};
    void* extra = nullptr;
    if (!address || ::dladdr1(address, &place, &extra, RTLD_DL_SYMENT) == 0) return false;
    const auto* const entry = static_cast<const ElfW(Sym)*>(extra);
    if (!entry || place.dli_saddr != address) return false;
    const auto type = ELF64_ST_TYPE(entry->st_info);
    return type != STT_OBJECT && type != STT_TLS;
}

} // namespace Tolmen::Platform
