#include "DotText.h"

#include <algorithm>

namespace Zelm
{
namespace
{

/// As Graphviz reads texts in its tables.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char sign : text) switch (sign)
        {
            case '&': result += "&amp;"; break;
            case '<': result += "&lt;"; break;
            case '>': result += "&gt;"; break;
            case '"': result += "&quot;"; break;
            default: result += static_cast<unsigned char>(sign) < ' ' ? ' ' : sign;
        }
    return result;
}

/// Told apart by brightness, too, for those who see no colours, and on paper.
const char* colourOf(Drawing::State state)
{
    switch (state)
    {
        case Drawing::State::Fresh: return "#5aae61";
        case Drawing::State::Stale: return "#fee08b";
        case Drawing::State::NeverRun: return "#e0e0e0";
        case Drawing::State::Failed: return "#b2182b";
        case Drawing::State::NotReady: break;
    }
    return "#7f7f7f";
}

std::string portOf(const std::vector<std::string>& names, const std::string& name, char side)
{
    return side + std::to_string(std::ranges::find(names, name) - names.begin());
}

std::string cellOf(const std::vector<std::string>& names, std::size_t row, char side)
{
    if (row >= names.size()) return "<td></td>";
    return std::string("<td port=\"") + side + std::to_string(row) + "\" align=\"" +
           (side == 'i' ? "left" : "right") + "\">" + escaped(names[row]) + "</td>";
}

/// One cell a context.
std::string bandOf(const std::vector<Drawing::State>& states)
{
    std::string cells;
    for (const Drawing::State state : states)
        cells += std::string("<td height=\"7\" bgcolor=\"") + colourOf(state) + "\"></td>";
    return "<table border=\"0\" cellborder=\"0\" cellspacing=\"1\" cellpadding=\"0\"><tr>" + cells +
           "</tr></table>";
}

std::string labelOf(const Drawing::Node& node)
{
    std::string rows = "<tr><td colspan=\"2\" cellpadding=\"6\"><b>" + escaped(node.name) +
                       "</b><br/><font point-size=\"9\" color=\"#606060\">" +
                       escaped(node.creator) + "</font></td></tr><hr/>";
    for (std::size_t row = 0; row < std::max(node.inputs.size(), node.outputs.size()); ++row)
        rows += "<tr>" + cellOf(node.inputs, row, 'i') + cellOf(node.outputs, row, 'o') + "</tr>";
    return "<<table border=\"1\" color=\"#404040\" bgcolor=\"white\" cellborder=\"0\" "
           "cellspacing=\"0\" cellpadding=\"4\" style=\"rounded\">" +
           rows + "<tr><td colspan=\"2\" cellpadding=\"2\">" + bandOf(node.states) +
           "</td></tr></table>>";
}

std::string agesOf(const Drawing::Edge& edge)
{
    std::string text;
    for (const long long age : edge.ages)
        text += (text.empty() ? "" : " | ") + (age < 0 ? std::string("-") : std::to_string(age));
    return text;
}

/// What the bands mean, and the ages: the contexts from left to right, and the colours that occur;
/// and what dashes mean, if there are any.
std::string legendOf(const Drawing& drawing, bool withAges)
{
    std::string contexts;
    for (const std::string& context : drawing.contexts)
        contexts += (contexts.empty() ? "" : " | ") + escaped(context);
    std::string states;
    for (const Drawing::State state :
         {Drawing::State::Fresh, Drawing::State::Stale, Drawing::State::NeverRun,
          Drawing::State::Failed, Drawing::State::NotReady})
        if (std::ranges::any_of(drawing.nodes, [&](const Drawing::Node& node) {
                return std::ranges::find(node.states, state) != node.states.end();
            }))
            states += std::string("<td width=\"14\" height=\"7\" fixedsize=\"true\" bgcolor=\"") +
                      colourOf(state) + "\"></td><td>" + Drawing::wordOf(state) + "</td>";
    if (std::ranges::any_of(drawing.edges, &Drawing::Edge::isShared))
        states += "<td>dashed: shared inputs</td>";
    return std::string("<<table border=\"0\" cellborder=\"0\" cellspacing=\"3\"><tr><td>bands") +
           (withAges ? " and ages: " : ": ") + contexts + "</td>" + states + "</tr></table>>";
}

} // namespace

std::string dotTextOf(const Drawing& drawing, bool withAges)
{
    std::string text = "digraph network {\n"
                       "  graph [rankdir=LR, nodesep=0.35, ranksep=1.0, labelloc=b, "
                       "fontname=\"DejaVu Sans\", fontsize=9, label=" +
                       legendOf(drawing, withAges) +
                       "];\n"
                       "  node [shape=plain, fontname=\"DejaVu Sans\", fontsize=11];\n"
                       "  edge [fontname=\"DejaVu Sans\", fontsize=8, arrowsize=0.6, "
                       "color=\"#404040\"];\n";
    for (std::size_t at = 0; at < drawing.nodes.size(); ++at)
        text += "  n" + std::to_string(at) + " [label=" + labelOf(drawing.nodes[at]) + "];\n";
    for (const Drawing::Edge& edge : drawing.edges)
    {
        const Drawing::Node& from = drawing.nodes[edge.from];
        const Drawing::Node& to = drawing.nodes[edge.to];
        text += "  n" + std::to_string(edge.from) + ":" +
                (edge.isShared ? portOf(from.inputs, edge.output, 'i')
                               : portOf(from.outputs, edge.output, 'o') + ":e") +
                " -> n" + std::to_string(edge.to) + ":" + portOf(to.inputs, edge.input, 'i') + ":w";
        text += std::string(" [style=") + (edge.isShared ? "dashed" : "solid") +
                (withAges ? ", label=\"" + agesOf(edge) + "\"" : "") + "]";
        text += ";\n";
    }
    return text + "}\n";
}

} // namespace Zelm
