#include <tests/support/CapturedOutput.h>

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>

namespace QuorlTest
{
namespace
{

std::array<bool, 3> isCaptured{};

void claim(CapturedOutput::Stream stream)
{
    if (isCaptured.at(stream)) throw std::logic_error("the stream is being captured already");
    isCaptured.at(stream) = true;
}

/// What is behind a place; where the file is written is left alone.
std::string contentsOf(int file, std::size_t from)
{
    std::string text;
    std::array<char, 4096> block{};
    for (::ssize_t got = 0; (got = ::pread(file, block.data(), block.size(),
                                           static_cast<::off_t>(from + text.size()))) > 0;)
        text.append(block.data(), static_cast<std::size_t>(got));
    return text;
}

void flushAll()
{
    std::fflush(stdout);
    std::fflush(stderr);
}

} // namespace

CapturedOutput::CapturedOutput(Stream stream) : stream_(stream), file_(-1), original_(-1)
{
    claim(stream);
    flushAll();
    file_ = ::memfd_create("captured", MFD_CLOEXEC);
    original_ = ::dup(stream_);
    if (file_ < 0 || original_ < 0 || ::dup2(file_, stream_) < 0)
    {
        isCaptured.at(stream) = false;
        throw std::runtime_error("the stream cannot be captured");
    }
}

CapturedOutput::~CapturedOutput()
{
    restore();
    ::close(file_);
}

std::string CapturedOutput::text()
{
    if (original_ >= 0)
    {
        restore();
        text_ = contentsOf(file_, 0);
    }
    return text_;
}

std::string CapturedOutput::take()
{
    flushAll();
    const std::string fresh = contentsOf(file_, taken_);
    taken_ += fresh.size();
    return fresh;
}

void CapturedOutput::restore()
{
    if (original_ < 0) return;
    flushAll();
    ::dup2(original_, stream_);
    ::close(original_);
    original_ = -1;
    isCaptured.at(stream_) = false;
}

} // namespace QuorlTest
