#pragma once

#include "Journal.h"
#include "Modules.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Geoid
{

/// What is evaluated side by side with others: the values that a context has of its own.
struct View
{
    std::string name; ///< of the context
    std::string title;
    double west = -180.0;      ///< degrees east
    double east = 180.0;       ///< degrees east
    double south = -90.0;      ///< degrees north
    double north = 90.0;       ///< degrees north
    int width = 0;             ///< pixels
    int height = 0;            ///< pixels
    double azimuth = 315.0;    ///< degrees, of the light
    double altitude = 45.0;    ///< degrees, of the light
    double exaggeration = 1.0; ///< of heights
    double low = 0.0;          ///< metres, of the colours
    double high = 0.0;         ///< metres
    double interval = 0.0;     ///< metres, of the contours
    std::filesystem::path picture;
};

/// One object that ran, and the age that it has since.
struct Run
{
    std::string object;
    long long age;
};

/// The one network, made by creators of modules, and the contexts in which it is evaluated. Owns
/// its objects and pools; they leave the registry with it.
class Network
{
public:
    /// \throws GeoidError if a creator is missing, or does not fit.
    Network(const Modules& modules, const std::filesystem::path& gridFile);
    Network(const Network&) = delete;
    Network& operator=(const Network&) = delete;
    ~Network();

    /// Makes a context with values of its own.
    void addContext(const View& view);

    /// Brings the picture of a context up to date.
    /// \return what ran, in that order.
    /// \throws what a step could not do, as a std::exception.
    std::vector<Run> request(const std::string& context);

    /// Changes a parameter in one context, or of all.
    /// \throws GeoidError if there is none of that name, or it refuses the text.
    void setIn(const std::string& context, const std::string& object, const std::string& parameter,
               const std::string& text);
    void setEverywhere(const std::string& object, const std::string& parameter,
                       const std::string& text);

    /// The objects upstream of this one that it takes something from, each once.
    std::vector<std::string> sourcesOf(const std::string& object) const;
    std::vector<std::string> objects() const;

private:
    void make(const Modules& modules, const std::string& name, const std::string& creator);
    void connect(const std::string& parent, const std::string& child);
    void share(const std::string& from, const std::string& to, const std::string& parameter);
    void set(const Quorl::RefPtr<Quorl::ValuePool>& pool, const std::string& object,
             const std::string& parameter, const std::string& text);
    const Quorl::RefPtr<Quorl::VObject>& find(const std::string& object) const;

    const Quorl::RefPtr<Journal> journal_{new Journal};
    std::vector<Quorl::RefPtr<Quorl::VObject>> steps_;
    std::vector<Quorl::RefPtr<Quorl::ValuePool>> pools_;
};

} // namespace Geoid
