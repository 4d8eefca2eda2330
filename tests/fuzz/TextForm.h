#pragma once

#include <quorl/values/VValueTrait.h>

#include <cstdlib>
#include <string>

namespace QuorlTest
{

/// What was read is written in a form that gives itself back once it is read.
template <class T>
void readAndWrite(const std::string& text)
{
    using Trait = Quorl::VValueTrait<T>;
    T datum{};
    if (!Trait::setValueFromText(datum, text)) return;
    const std::string once = Trait::Text(datum);
    T again{};
    const bool isTaken = Trait::setValueFromText(again, once);
    if (once.empty()) return; // of the character 0, which no text gives
    if (!isTaken || Trait::Text(again) != once) std::abort();
}

} // namespace QuorlTest
