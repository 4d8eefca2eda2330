#include "WholeFile.h"

#include "NetworkError.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace Zelm
{
namespace
{

/// A new file beside another; removed unless it takes its place.
class Unfinished
{
public:
    explicit Unfinished(const std::string& file)
        : file_(file), name_(file + ".XXXXXX"), descriptor_(::mkstemp(name_.data()))
    {
        if (descriptor_ < 0) fail();
    }
    ~Unfinished()
    {
        if (descriptor_ >= 0) ::close(descriptor_);
        if (!isFinished_) ::unlink(name_.c_str());
    }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

    void write(std::string_view bytes) const
    {
        while (!bytes.empty())
        {
            const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
            if (written < 0 && errno != EINTR) fail();
            if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    void finish()
    {
        const mode_t mask = ::umask(0); // a file of `mkstemp` is for its owner alone
        ::umask(mask);
        if (::fchmod(descriptor_, 0666 & ~mask) != 0 || ::fsync(descriptor_) != 0) fail();
        if (::rename(name_.c_str(), file_.c_str()) != 0) fail();
        isFinished_ = true;
    }

private:
    [[noreturn]] void fail() const
    {
        throw NetworkError(file_, {}, "", "",
                           std::string("this cannot be written: ") + std::strerror(errno));
    }

    const std::string file_;
    std::string name_;
    const int descriptor_;
    bool isFinished_ = false;
};

} // namespace

void writeWholeFile(const std::string& file, const std::string& bytes)
{
    Unfinished unfinished(file);
    unfinished.write(bytes);
    unfinished.finish();
}

} // namespace Zelm
