#pragma once

#include <tests/model/WalkNetwork.h>

namespace QuorlTest::Walks
{

/// Objects whose walk is the kernel's.
Quorl::VObject* makeWalkedByKernel(Network& network, const std::string& name, int number, int kind);

/// Objects whose walk is the plain one.
Quorl::VObject* makeWalkedPlainly(Network& network, const std::string& name, int number, int kind);

} // namespace QuorlTest::Walks
