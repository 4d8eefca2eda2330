#include <tests/support/CapturedOutput.h>

#include <unistd.h>

#include <array>
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

std::string contentsOf(std::FILE* file)
{
    std::string text;
    std::array<char, 4096> block{};
    std::rewind(file);
    while (const std::size_t got = std::fread(block.data(), 1, block.size(), file))
        text.append(block.data(), got);
    return text;
}

void flushAll()
{
    std::fflush(stdout);
    std::fflush(stderr);
}

} // namespace

CapturedOutput::CapturedOutput(Stream stream) : stream_(stream), file_(nullptr), original_(-1)
{
    claim(stream);
    flushAll();
    file_ = std::tmpfile();
    original_ = ::dup(stream_);
    if (!file_ || original_ < 0 || ::dup2(::fileno(file_), stream_) < 0)
    {
        isCaptured.at(stream) = false;
        throw std::runtime_error("the stream cannot be captured");
    }
}

CapturedOutput::~CapturedOutput()
{
    restore();
    std::fclose(file_);
}

std::string CapturedOutput::text()
{
    if (original_ >= 0)
    {
        restore();
        text_ = contentsOf(file_);
    }
    return text_;
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
