#pragma once

#include <quorl/modules/ZelmSaver.h>

#include <string>
#include <vector>

namespace QuorlTest
{

/// Notes the files that it is asked to write, and succeeds or not.
class TestSaver final : public Quorl::ZelmSaver
{
public:
    using ZelmSaver::ZelmSaver;

    bool save(const std::string& file) override
    {
        files.push_back(file);
        return succeeds;
    }

    bool succeeds = true;
    std::vector<std::string> files;
};

} // namespace QuorlTest
