#pragma once

#include <string_view>

namespace QuorlTest
{

/// While this lives, one call of a function of the system does not do what it should. At most one
/// at a time, in a program that is linked with these functions in the place of the system's:
///
///     close  dlopen  fchmod  fclose  fflush  fread  fsync  fwrite  memfd_create  mkdtemp  opendir
///     pread  read  readdir  rename  renameat2  sendfile  stat  write
class FailingCall
{
public:
    enum Manner
    {
        Fails,      ///< with the given error
        Halves,     ///< does half of what is wanted, as reads and writes may
        Interrupts, ///< raises `SIGINT`, and goes on
        Kills,      ///< ends the process at once, before it is done
    };

    /// \param number of the call, from 1 on. \param error as of `errno`.
    FailingCall(std::string_view function, long number, int error, Manner manner = Fails);
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
    ~FailingCall();

    /// Whether there were as many calls.
    static bool hasHappened();
};

} // namespace QuorlTest
