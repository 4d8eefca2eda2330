#include "WhyText.h"

#include "Output.h"
#include "Table.h"

#include <quorl/objects/VObject.h>

#include <algorithm>

namespace Zelm
{
namespace
{

std::string chainOf(const Explanation& explanation)
{
    Table table({Table::Left, Table::Left, Table::Right, Table::Right, Table::Left});
    table.add({"object", "input", "age", "own age", "row"});
    for (const Explanation::Link& link : explanation.chain)
        table.add({link.object, link.input,
                   link.row == Row::Demanded ? "" : told(link.age, explanation.begin),
                   told(link.ownAge, explanation.begin),
                   std::to_string(static_cast<int>(link.row)) + ": " + link.words});
    return table.text() + "  " + explanation.start + '\n';
}

/// By how much an input would have to be younger; nothing where that would not help.
std::string distanceOf(const InputStory& input)
{
    if (input.fate != InputStory::Fate::Pure && input.fate != InputStory::Fate::Asked) return {};
    return std::to_string(input.ownAge - std::max(input.age, input.sourceAge) + 1);
}

/// The nearest miss at each input.
std::string missesOf(const Story& story, Stamp begin)
{
    Table table({Table::Left, Table::Right, Table::Left, Table::Right, Table::Right, Table::Right,
                 Table::Left});
    table.add({"input", "age", "source", "its age", "own age", "too old by", ""});
    for (const InputStory& input : story.inputs)
    {
        const bool isAsked = input.fate == InputStory::Fate::Asked;
        const bool isSeen = input.fate != InputStory::Fate::Unvisited;
        table.add({input.name, isSeen ? told(input.age, begin) : "",
                   input.source ? input.source->getName() : "",
                   isAsked ? told(input.sourceAge, begin) : "",
                   isSeen ? told(input.ownAge, begin) : "", distanceOf(input),
                   wordsOf(input.fate)});
    }
    table.add({"(connections)", told(story.connectionAge, begin), "", "", told(story.age, begin),
               std::to_string(story.age - story.connectionAge + 1), ""});
    return table.text();
}

std::string barriersOf(const Explanation& explanation)
{
    Table table({Table::Left, Table::Left});
    for (const Explanation::Barrier& barrier : explanation.barriers)
        table.add({barrier.object + "." + barrier.input, wordsOf(barrier.fate)});
    return table.text();
}

} // namespace

std::string textOf(const Answer& answer)
{
    const Explanation& explanation = answer.explanation;
    const bool isOther = !answer.request.empty() && answer.request != explanation.object;
    const std::string where = isOther ? ", where " + answer.request + " is requested" : "";
    std::string text = Output::strong(answer.context + where + ": " + explanation.object + " " +
                                      explanation.verdict()) +
                       '\n';
    if (!explanation.story)
        text += barriersOf(explanation);
    else if (explanation.hadToRun())
        text += chainOf(explanation);
    else if (explanation.story->end != Story::End::Occupied)
        text += missesOf(*explanation.story, explanation.begin);
    return text;
}

Json jsonOf(const Answer& answer)
{
    Json json{{"context", answer.context}};
    json["request"] = answer.request.empty() ? Json(nullptr) : Json(answer.request);
    json.update(answer.explanation.json());
    json["foreseen"] = answer.isForeseen;
    return json;
}

} // namespace Zelm
