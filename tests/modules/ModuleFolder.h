#pragma once

#include <quorl/foundation/VGlobals.h>
#include <quorl/modules/VModule.h>
#include <quorl/modules/VModules.h>
#include <quorl/objects/VObject.h>
#include <quorl/registry/VCreatorBase.h>
#include <quorl/registry/VCreatorBaseInfo.h>
#include <quorl/registry/VCreatorMap.h>
#include <quorl/registry/VCreatorMapTypes.h>
#include <quorl/slots/VSlot.h>
#include <quorl/values/VValueBase.h>
#include <quorl/values/ValuePool.h>
#include <tests/support/CapturedOutput.h>
#include <tests/support/FileBytes.h>
#include <tests/support/TemporaryFolder.h>
#include <tests/support/WorkingDirectory.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace QuorlTest
{

/// Leaves objects of an unloaded module alone, and notes them.
struct NoteItems final : Quorl::VManagedObject::VRemoveItem
{
    void removeItem(const std::string& /*module*/,
                    const Quorl::RefPtr<Quorl::VManagedObject>& object) override
    {
        names.push_back(object ? object->getName() : "none");
    }
    std::vector<std::string> names;
};

/// A working directory of the test's own, into which it copies modules. At the end they are
/// unloaded, and leave no entries behind.
class ModuleFolder : public testing::Test
{
protected:
    ModuleFolder()
    {
        asked().clear();
        answer() = 5;
        dialog_ = Quorl::VModules::setErrorDialog(&ask);
    }

    ~ModuleFolder() override
    {
        Quorl::VModules::setErrorDialog(dialog_);
        forgetModules();
    }

    /// Copies a module of the tests. \param to relative to the folder.
    /// \return its path from there.
    std::string add(const std::string& module, const std::string& to) const
    {
        const std::filesystem::path target = folder_ / to;
        std::filesystem::create_directories(target.parent_path());
        for (const auto& file :
             std::filesystem::directory_iterator(std::filesystem::path(TEST_MODULES) / module))
        {
            // Beside the old one and over it, so that what is loaded keeps its file.
            const std::filesystem::path fresh = target.string() + ".new";
            std::filesystem::copy_file(file.path(), fresh);
            std::filesystem::rename(fresh, target);
        }
        return to;
    }

    static void write(const std::string& path, const std::string& bytes)
    {
        std::filesystem::create_directories(std::filesystem::absolute(path).parent_path());
        writeBytes(path, bytes);
    }

    static std::string read(const std::string& path) { return bytesOf(path); }

    static Quorl::RefPtr<Quorl::VCreatorBase> creator(const std::string& key)
    {
        return Quorl::VManagedObject::find(typeid(Quorl::VInputCreatorBase), key);
    }

    /// What an object of a creator with an output "answer" computes.
    static std::string answerOf(const std::string& key)
    {
        const Quorl::RefPtr<Quorl::VObject> object =
            creator(key)->create("asked", Tolmen::Intercube());
        const Quorl::RefPtr<Quorl::ValuePool> pool(new Quorl::ValuePool);
        Quorl::VRequest request(pool, false);
        object->init_request(request, 1.0);
        const std::string text = object->getOutput("answer")->getValueBase(pool)->Text();
        object->Quorl::VManagedObject::remove();
        return text;
    }

    struct Question
    {
        std::string caption;
        std::string text;
    };

    static std::vector<Question>& asked()
    {
        static std::vector<Question> questions;
        return questions;
    }
    static int& answer()
    {
        static int number = 5;
        return number;
    }

private:
    static int ask(const std::string& caption, const std::string& text)
    {
        asked().push_back({caption, text});
        return answer();
    }

    static void forgetModules()
    {
        auto& table = *Quorl::VGlobals::theGlobals().modules;
        std::vector<std::string> paths;
        for (const auto& [path, info] : table) paths.push_back(path);
        std::vector<std::pair<Quorl::VCreatorMap*, std::string>> entries;
        for (const auto& [type, domain] : Quorl::VCreatorTypes())
            for (const auto& [name, info] : *domain)
                if (!info || !info->ModuleName.empty()) entries.emplace_back(domain.rawptr(), name);
        NoteItems items;
        outputOf([&] {
            for (const std::string& path : paths) Quorl::UnloadVModule(path, items);
            for (const auto& [domain, name] : entries) domain->remove(name);
        });
        table.clear();
        Quorl::VManagedObject::CurrentLoadModule.clear();
    }

    const TemporaryFolder folder_;
    const WorkingDirectory workingDirectory_{folder_.path()};
    Quorl::VModules::ErrorDialog dialog_;
};

} // namespace QuorlTest
