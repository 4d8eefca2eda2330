#pragma once

#include <functional>

namespace QuorlTest
{

/// Does something when it ends.
template <class Base>
class Ending final : public Base
{
public:
    using Base::Base;
    ~Ending() override
    {
        if (whenEnded) whenEnded();
    }

    std::function<void()> whenEnded;
};

} // namespace QuorlTest
