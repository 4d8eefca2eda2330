#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace QuorlTest::Walks
{

/// What was seen in a game, note by note, as lines of text or, which is quick, as a digest of them.
class Transcript
{
public:
    enum Form
    {
        Digest,
        Text,
    };

    explicit Transcript(Form form) : form_(form) {}

    /// Labels are told by their first eight characters.
    template <class... Numbers>
    void note(std::string_view label, Numbers... numbers)
    {
        if (form_ == Digest)
        {
            std::uint64_t begin = 0;
            std::memcpy(&begin, label.data(), std::min(label.size(), sizeof begin));
            mix(begin);
            (mix(static_cast<std::uint64_t>(numbers)), ...);
            return;
        }
        std::string line(label);
        ((line += " " + std::to_string(numbers)), ...);
        lines.push_back(line);
    }

    void text(std::string_view label, const std::string& found)
    {
        note(label);
        if (form_ == Digest)
            mix(std::hash<std::string>()(found));
        else
            lines.back() += " " + found;
    }

    std::uint64_t digest() const { return digest_; } ///< of all notes so far

    std::vector<std::string> lines; ///< of a text

private:
    void mix(std::uint64_t number)
    {
        digest_ = (digest_ ^ number) * 0x9E3779B97F4A7C15ULL;
        digest_ ^= digest_ >> 29;
    }

    const Form form_;
    std::uint64_t digest_ = 0;
};

} // namespace QuorlTest::Walks
