#include "simulator/screen_outline.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>

namespace lumbrine {

namespace {

template <typename Value>
std::optional<Value> read(const SimulatedScreen& screen, const ScreenElement& element, std::string_view name,
                          TimePoint now) {
    auto value = screen.attribute(element, name, now);
    auto* const held = value ? std::get_if<Value>(&*value) : nullptr;
    return held != nullptr ? std::optional(std::move(*held)) : std::nullopt;
}

ScreenNode nodeOf(const SimulatedScreen& screen, const ScreenElement& element, TimePoint now) {
    const auto text = [&](std::string_view name) { return read<std::string>(screen, element, name, now); };
    ScreenNode node{.element = element,
                    .role = text("AXRole").value_or(""),
                    .subrole = text("AXSubrole"),
                    .title = text("AXTitle"),
                    .description = text("AXDescription"),
                    .text = text("AXValue"),
                    .isOn = read<bool>(screen, element, "AXValue", now),
                    .isSelected = read<bool>(screen, element, "AXSelected", now),
                    .children = {}};
    const auto children = read<std::vector<ScreenElement>>(screen, element, "AXChildren", now);
    for (const ScreenElement& child : children.value_or(std::vector<ScreenElement>()))
        node.children.push_back(nodeOf(screen, child, now));
    return node;
}

const ScreenNode* find(const std::vector<const ScreenNode*>& nodes, const ScreenElement& element) {
    const auto found = std::ranges::find(nodes, element, [](const ScreenNode* node) { return node->element; });
    return found == nodes.end() ? nullptr : *found;
}

void appendLines(const ScreenNode& node, int depth, std::vector<ScreenLine>& lines) {
    std::string text = node.title.value_or(node.description.value_or(""));
    if (node.text && !node.text->empty()) text += (text.empty() ? "" : ": ") + *node.text;
    if (node.isOn) text = (*node.isOn ? "● " : "○ ") + text;
    const bool isButton = node.role == "AXButton" || node.role == "AXRadioButton";
    if (!text.empty()) lines.push_back({node.element, depth, std::move(text), isButton});
    for (const ScreenNode& child : node.children)
        appendLines(child, depth + 1, lines);
}

} // namespace

ScreenNode outlineOf(const SimulatedScreen& screen, TimePoint now) {
    return nodeOf(screen, {ScreenElement::Kind::application}, now);
}

std::vector<const ScreenNode*> windowsIn(const ScreenNode& application) {
    std::vector<const ScreenNode*> windows;
    for (const ScreenNode& child : application.children)
        if (child.role == "AXWindow") windows.push_back(&child);
    return windows;
}

std::vector<const ScreenNode*> menusIn(const ScreenNode& application) {
    std::vector<const ScreenNode*> menus;
    for (const ScreenNode& child : application.children)
        if (child.role == "AXMenuBar")
            for (const ScreenNode& menu : child.children)
                menus.push_back(&menu);
    return menus;
}

WindowChanges windowChanges(const ScreenNode& before, const ScreenNode& after) {
    const std::vector<const ScreenNode*> old = windowsIn(before);
    const std::vector<const ScreenNode*> now = windowsIn(after);
    WindowChanges changes;
    for (const ScreenNode* window : old)
        if (find(now, window->element) == nullptr) changes.closed.push_back(window->element);
    for (auto window = now.rbegin(); window != now.rend(); ++window) {
        const ScreenNode* const known = find(old, (*window)->element);
        if (known == nullptr) {
            changes.opened.push_back(*window);
        } else if (*known != **window) {
            changes.changed.push_back(*window);
        }
    }
    return changes;
}

std::vector<ScreenLine> linesOf(const ScreenNode& window) {
    std::vector<ScreenLine> lines;
    for (const ScreenNode& child : window.children)
        appendLines(child, 0, lines);
    return lines;
}

} // namespace lumbrine
