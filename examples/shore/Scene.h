#pragma once

#include <quorl/objects/VObject.h>

#include <filesystem>
#include <map>
#include <string>

namespace Shore
{

/// What a scene is made of, and where its picture goes.
struct Plan
{
    std::filesystem::path grid;
    std::filesystem::path picture;
    int width = 720; ///< pixels; the map is half as high
};

/// A network that draws how far each place is from the line where the heights cross a level. One
/// of its objects answers twice: roughly at once, finely when a task in the background is done.
class Scene
{
public:
    /// \throws std::runtime_error if a module has not brought its creator, or does not fit.
    explicit Scene(const Plan& plan);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    void setLevel(double metres);

    /// Brings the picture up to date. \return whether anything ran.
    /// \throws what an object throws.
    bool request();

    /// Whether a task looks for a finer answer.
    bool isRefining() const;

private:
    Quorl::RefPtr<Quorl::VObject> make(const std::string& name, const std::string& creator);
    void set(const std::string& object, const std::string& slot, const std::string& text);

    std::map<std::string, Quorl::RefPtr<Quorl::VObject>> steps_;
};

} // namespace Shore
