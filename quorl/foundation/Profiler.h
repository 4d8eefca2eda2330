#pragma once

#include <quorl/foundation/Export.h>

#include <string>

namespace Tolmen
{

/// Measures a scope: the constructor opens a section, the destructor closes it. Without a listener
/// it costs one test.
class TOLMEN_API Profiler
{
public:
    struct Section
    {
        std::string file;
        int line;
        std::string function;
        std::string object; ///< the name of what works in the section
        int detail;
    };

    /// Told of each section. Not owned: it must outlive all sections opened while it listens.
    class TOLMEN_API Listener
    {
    public:
        virtual ~Listener();
        virtual void opened(const Section& section) = 0;
        virtual void closed(const Section& section, double seconds) = 0;
    };

    /// The texts are copied if somebody listens.
    Profiler(const char* file, int line, const char* function, const std::string& object,
             int detail)
    {
        if (theListener) open(file, line, function, object, detail);
    }
    Profiler(const std::string& file, int line, const std::string& function,
             const std::string& object, int detail)
        : Profiler(file.c_str(), line, function.c_str(), object, detail)
    {
    }
    ~Profiler()
    {
        if (running_) close();
    }
    Profiler(const Profiler&) = delete;
    Profiler& operator=(const Profiler&) = delete;

    static bool isListenedTo() { return theListener != nullptr; }

    /// \return the previous listener; null means none.
    static Listener* setListener(Listener* listener);

private:
    struct Running;

    void open(const char* file, int line, const char* function, const std::string& object,
              int detail);
    void close();

    static Listener* theListener;
    Running* running_ = nullptr; // owned
};

} // namespace Tolmen
