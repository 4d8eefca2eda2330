#pragma once

#include "HostNetwork.h"

#include <CLI/CLI.hpp>

#include <string>
#include <utility>
#include <vector>

namespace Zelm
{

/// Which part of a network a command works on, and with which values, as the command line says.
struct Choice
{
    std::vector<std::string> sets;     ///< object.slot=text
    std::vector<std::string> contexts; ///< empty means all
    std::vector<std::string> requests; ///< empty means those of the file

    void addTo(CLI::App& command);

    /// \throws UsageError for what the network does not have, as all of these.
    std::vector<RefPtr<Quorl::ValuePool>> contextsOf(const LoadedNetwork& network) const;
    std::vector<RequestEntry> requestsOf(const HostNetwork& network) const;

    /// Gives inputs their values in these contexts.
    void setInputs(const LoadedNetwork& network,
                   const std::vector<RefPtr<Quorl::ValuePool>>& pools) const;

    /// The same where they have others by now, as after an edit of the file. Makes nothing younger
    /// that is as it was set.
    void restoreInputs(const LoadedNetwork& network,
                       const std::vector<RefPtr<Quorl::ValuePool>>& pools) const;
};

/// Adds an option that takes one word, and may be repeated.
void addRepeated(CLI::App& command, const char* option, std::vector<std::string>& words,
                 const char* form, const char* help);

/// What stands on both sides of the first equals sign of an option.
std::pair<std::string, std::string> halvesOf(const std::string& option, const std::string& text,
                                             const std::string& form);

/// An object that an option names.
RefPtr<Quorl::VObject> objectOf(const LoadedNetwork& network, const std::string& option,
                                const std::string& name);

} // namespace Zelm
