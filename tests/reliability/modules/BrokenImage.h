#pragma once

#include <elf.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

namespace QuorlTest
{

/// The bytes of a module, to be broken at one place.
class BrokenImage
{
public:
    explicit BrokenImage(std::string wholeBytes) : bytes(std::move(wholeBytes)) {}

    template <class Edit>
    void header(Edit&& edit)
    {
        change<Elf64_Ehdr>(0, edit);
    }

    /// Changes the segment of that type; of several the `skipped`th behind the first.
    template <class Edit>
    void segment(std::uint32_t type, Edit&& edit, int skipped = 0)
    {
        const auto head = at<Elf64_Ehdr>(0);
        for (std::size_t number = 0; number < head.e_phnum; ++number)
        {
            const std::size_t place = head.e_phoff + number * sizeof(Elf64_Phdr);
            if (at<Elf64_Phdr>(place).p_type == type && skipped-- == 0)
                return change<Elf64_Phdr>(place, edit);
        }
        throw std::logic_error("the module has no such segment");
    }

    /// Removes all segments of a type, by giving them one that nobody knows.
    void withoutSegments(std::uint32_t type)
    {
        const auto head = at<Elf64_Ehdr>(0);
        for (std::size_t number = 0; number < head.e_phnum; ++number)
            change<Elf64_Phdr>(head.e_phoff + number * sizeof(Elf64_Phdr), [&](Elf64_Phdr& entry) {
                if (entry.p_type == type) entry.p_type = PT_LOOS + 0x123;
            });
    }

    /// Replaces a text of the same length, where it first stands.
    void replace(const std::string& text, const std::string& other)
    {
        const auto place = bytes.find(text);
        if (place == std::string::npos || text.size() != other.size())
            throw std::logic_error("the module has no such text");
        bytes.replace(place, text.size(), other);
    }

    std::string bytes;

private:
    template <class T>
    T at(std::size_t place) const
    {
        T value;
        std::memcpy(&value, bytes.data() + place, sizeof value);
        return value;
    }

    template <class T, class Edit>
    void change(std::size_t place, Edit&& edit)
    {
        T value = at<T>(place);
        edit(value);
        std::memcpy(bytes.data() + place, &value, sizeof value);
    }
};

} // namespace QuorlTest
