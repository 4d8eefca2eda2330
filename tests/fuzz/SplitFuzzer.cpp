#include <quorl/foundation/StringUtil.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Fields = std::vector<std::string>;

/// The same, character by character.
Fields fieldsOf(const std::string& text, char separator, bool keepEmpty, char end)
{
    Fields fields;
    std::string field;
    for (const char letter : text)
    {
        if (letter == end) break;
        if (letter != separator)
            field += letter;
        else if (!field.empty() || keepEmpty)
            fields.push_back(std::exchange(field, {}));
    }
    if (!field.empty()) fields.push_back(field);
    return fields;
}

} // namespace

/// Any text is split as a plain reading of the rules has it. The first three bytes tell how.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kHow = 3;
    if (size < kHow) return 0;
    const char separator = static_cast<char>(data[0]);
    const char end = static_cast<char>(data[1]);
    const bool keepEmpty = data[2] % 2 != 0;
    const std::string text(reinterpret_cast<const char*>(data) + kHow, size - kHow);

    Fields fields{"before"};
    const int count = Tolmen::StringUtil::split(text, fields, separator, keepEmpty, end);

    Fields expected = fieldsOf(text, separator, keepEmpty, end);
    expected.insert(expected.begin(), "before");
    if (fields != expected || count + 1 != static_cast<int>(fields.size())) std::abort();
    return 0;
}
