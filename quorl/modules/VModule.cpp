#include <quorl/modules/VModule.h>

#include <quorl/modules/ApiWord.h>
#include <quorl/modules/LoadScope.h>
#include <quorl/platform/ModuleImage.h>
#include <quorl/platform/SharedLibrary.h>
#include <quorl/registry/VManagedObject.h>

#include <utility>

namespace Tolmen
{
template class ReferenceBase<Quorl::VModule>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

constexpr unsigned kWordText = 1;
constexpr unsigned kSourceText = 2;
constexpr std::size_t kMostOfWord = 1023;
constexpr std::size_t kMostOfSource = 4095;

constinit bool allStayLoaded = false;

/// \return the path of the module whose static initialisers run around this; empty without one.
string outerModule()
{
    const VModule* const outer = LoadScope::inStaticInitialisers();
    return outer ? outer->path : string();
}

/// What they register from then on is of their module.
void goOnWith(string& outer)
{
    if (!outer.empty()) VManagedObject::CurrentLoadModule.swap(outer);
}

/// Closes the quotation, in the place of the line end that some systems' texts have.
string closed(string text)
{
    if (!text.ends_with('\n')) return text + "\"\n";
    text.resize(text.size() < 2 ? 0 : text.size() - 2);
    return text + "\" \n";
}

string loadFailure(const string& path, const string& reason)
{
    if (reason.empty()) return "FormatMessage() call failed.";
    return "Error while loading Zelm plugin\n " + path + " \n\nThe problem is that \"" +
           closed(reason);
}

string incompatibility(const string& word, const string& source)
{
    const string hint = source.empty()
                            ? string("\n(No source code information available.)\n")
                            : "\nThe plugin was created from [" + source + "].\n\nDo \"make -C " +
                                  source + "\" in the Zelm directory to recompile.\n";
    return "Incompatible Plugin! Found: " + word +
           ", but need to have: " ZELM_API_WORD ". The required plugin needs to be recompiled.\n" +
           hint;
}

} // namespace

VModule::VModule(const string& modulePath)
    : path(modulePath), fileInfo(modulePath), errorText("No error on module " + modulePath)
{
    string outer = outerModule(); // ahead: a library that is loaded is not to fail any more
    VManagedObject::CurrentLoadModule = path;
    try
    {
        // Deliberate: a file that is refused for its word leaves CurrentLoadModule set.
        if (isCompatible()) load();
    }
    catch (...)
    {
        VManagedObject::CurrentLoadModule.clear();
        goOnWith(outer);
        throw;
    }
    goOnWith(outer);
}

VModule::~VModule()
{
    if (library_ && allStayLoaded) library_->stay();
}

/// Without running any code of the file.
bool VModule::isCompatible()
{
    const Tolmen::Platform::ModuleImage image(path);
    if (!image.error().empty())
    {
        VManagedObject::CurrentLoadModule.clear();
        errorText = loadFailure(path, image.error());
        return false;
    }
    if (!image.hasTexts())
    {
        errorText = "No Zelm version resource information available.\n";
        return false;
    }
    const string word = image.text(kWordText, kMostOfWord);
    if (word.empty())
    {
        errorText = "Could not load version string resource.\n";
        return false;
    }
    sourceInfo = image.text(kSourceText, kMostOfSource);
    if (word == ZELM_API_WORD) return true;
    errorText = incompatibility(word, sourceInfo);
    return false;
}

void VModule::load()
{
    const LoadScope scope(*this, LoadScope::Phase::StaticInitialisers);
    auto library = std::make_unique<Tolmen::Platform::SharedLibrary>(path);
    VManagedObject::CurrentLoadModule.clear();
    if (library->isLoaded())
        library_ = std::move(library);
    else
        errorText = loadFailure(path, library->error());
}

bool VModule::isValid() const
{
    return library_ != nullptr;
}

void* VModule::getFunction(const string& name) const
{
    return library_ ? library_->symbol(name) : nullptr;
}

bool VModule::haveNewerPlugin() const
{
    const Tolmen::FileInfo present(path);
    return !present.invalid && present.modified > fileInfo.modified;
}

void VModule::leaveBehind()
{
    if (library_) library_->leaveBehind();
}

void VModule::keepAllLoaded()
{
    allStayLoaded = true;
}

} // namespace Quorl
