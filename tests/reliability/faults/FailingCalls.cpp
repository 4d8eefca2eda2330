#include <tests/reliability/faults/FailingCalls.h>

#include <dirent.h>
#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace QuorlTest
{
namespace
{

constinit std::string_view theFunction;
constinit long theCallsLeft = 0;
constinit int theError = 0;
constinit FailingCall::Manner theManner = FailingCall::Fails;

/// \return whether this call is the one that does not do what it should.
bool isTheOne(std::string_view function)
{
    if (theCallsLeft <= 0 || function != theFunction || --theCallsLeft > 0) return false;
    if (theManner == FailingCall::Kills) ::raise(SIGKILL);
    if (theManner == FailingCall::Interrupts) ::raise(SIGINT);
    return theManner != FailingCall::Interrupts;
}

/// \return whether this call fails, and has told why.
bool fails(std::string_view function)
{
    if (!isTheOne(function)) return false;
    errno = theError;
    return true;
}

/// The system's own. Looked up at each call: some are needed before any static is there.
template <class Function>
Function* own(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// Of reads and writes. \return how much of it is to be done; -1 if nothing can be.
ssize_t permitted(std::string_view function, std::size_t size)
{
    if (!isTheOne(function)) return static_cast<ssize_t>(size);
    errno = theError;
    return theManner == FailingCall::Halves ? static_cast<ssize_t>((size + 1) / 2) : -1;
}

} // namespace

FailingCall::FailingCall(std::string_view function, long number, int error, Manner manner)
{
    theFunction = function;
    theError = error;
    theManner = manner;
    theCallsLeft = number;
}

FailingCall::~FailingCall()
{
    theCallsLeft = 0;
    theFunction = {};
}

bool FailingCall::hasHappened()
{
    return theCallsLeft == 0;
}

} // namespace QuorlTest

// Each stands in the place of the system's for the kernel, too.
#pragma GCC visibility push(default)

extern "C" {

using QuorlTest::fails;
using QuorlTest::own;
using QuorlTest::permitted;

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* file)
{
    const ssize_t most = permitted("fwrite", count);
    if (most < 0) return 0;
    return own<decltype(fwrite)>("fwrite")(bytes, size, static_cast<size_t>(most), file);
}

size_t fread(void* bytes, size_t size, size_t count, FILE* file)
{
    const ssize_t most = permitted("fread", count);
    if (most < 0) return 0;
    return own<decltype(fread)>("fread")(bytes, size, static_cast<size_t>(most), file);
}

int fflush(FILE* file)
{
    return fails("fflush") ? EOF : own<decltype(fflush)>("fflush")(file);
}

int fclose(FILE* file)
{
    const bool isLost = fails("fclose"); // the stream is gone all the same
    const int answer = own<decltype(fclose)>("fclose")(file);
    return isLost ? EOF : answer;
}

int close(int descriptor)
{
    const bool isLost = fails("close");
    const int answer = own<decltype(close)>("close")(descriptor);
    return isLost ? -1 : answer;
}

ssize_t write(int descriptor, const void* bytes, size_t size)
{
    const ssize_t most = permitted("write", size);
    if (most < 0) return -1;
    return own<decltype(write)>("write")(descriptor, bytes, static_cast<size_t>(most));
}

ssize_t read(int descriptor, void* bytes, size_t size)
{
    const ssize_t most = permitted("read", size);
    if (most < 0) return errno == 0 ? 0 : -1; // the file has shrunk
    return own<decltype(read)>("read")(descriptor, bytes, static_cast<size_t>(most));
}

ssize_t pread(int descriptor, void* bytes, size_t size, off_t offset)
{
    const ssize_t most = permitted("pread", size);
    if (most < 0) return errno == 0 ? 0 : -1; // the file has shrunk
    return own<decltype(pread)>("pread")(descriptor, bytes, static_cast<size_t>(most), offset);
}

ssize_t sendfile(int to, int from, off_t* offset, size_t size) noexcept
{
    const ssize_t most = permitted("sendfile", size);
    if (most < 0) return errno == 0 ? 0 : -1; // the file has shrunk
    return own<decltype(sendfile)>("sendfile")(to, from, offset, static_cast<size_t>(most));
}

int memfd_create(const char* name, unsigned int flags) noexcept
{
    return fails("memfd_create") ? -1 : own<decltype(memfd_create)>("memfd_create")(name, flags);
}

int fsync(int descriptor)
{
    return fails("fsync") ? -1 : own<decltype(fsync)>("fsync")(descriptor);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    return fails("fchmod") ? -1 : own<decltype(fchmod)>("fchmod")(descriptor, mode);
}

char* mkdtemp(char* path) noexcept
{
    return fails("mkdtemp") ? nullptr : own<decltype(mkdtemp)>("mkdtemp")(path);
}

int rename(const char* from, const char* to) noexcept
{
    return fails("rename") ? -1 : own<decltype(rename)>("rename")(from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned int flags) noexcept
{
    if (fails("renameat2")) return -1;
    return own<decltype(renameat2)>("renameat2")(fromFolder, from, toFolder, to, flags);
}

int stat(const char* path, struct stat* record) noexcept
{
    return fails("stat") ? -1 : own<decltype(stat)>("stat")(path, record);
}

DIR* opendir(const char* path)
{
    return fails("opendir") ? nullptr : own<decltype(opendir)>("opendir")(path);
}

dirent* readdir(DIR* folder)
{
    return fails("readdir") ? nullptr : own<decltype(readdir)>("readdir")(folder);
}

void* dlopen(const char* path, int flags) noexcept
{
    return fails("dlopen") ? nullptr : own<decltype(dlopen)>("dlopen")(path, flags);
}

} // extern "C"

#pragma GCC visibility pop
