#include "screen/testing/screen_tree.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace lumbrine {

namespace {

using Element = MemoryScreen::Element;

class TreeReader {
public:
    explicit TreeReader(MemoryScreen& screen) : screen(screen) {}

    std::expected<ElementLabels, std::string> read(std::string_view text) {
        while (!text.empty()) {
            ++lineNumber;
            const std::size_t end = std::min(text.find('\n'), text.size());
            if (!takeLine(text.substr(0, end))) return std::unexpected(problem);
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        if (!resolveReferences()) return std::unexpected(problem);
        return std::move(labels);
    }

private:
    // The place for the elements of the next level.
    struct Level {
        Element owner{};
        std::string attribute{};
        bool isSection = false; // "NAME:" or "NAME=", on a separate line
        bool isSingle = false;
    };

    struct Reference {
        Element owner;
        std::string attribute;
        std::vector<std::string> to;
        bool isList;
        int lineNumber;
    };

    bool fail(std::string_view what) {
        problem = "line " + std::to_string(lineNumber) + ": " + std::string(what);
        return false;
    }

    bool takeLine(std::string_view line) {
        const std::size_t indent = line.find_first_not_of(' ');
        if (indent == std::string_view::npos || line[indent] == '#') return true;
        if (indent % 2 != 0 || indent / 2 > levels.size()) return fail("not one step of two spaces deeper");
        levels.resize(indent / 2);
        rest = line.substr(indent);
        if (levels.empty()) return takeApplication();
        const bool isOneWord = rest.find_first_of(" \"") == std::string_view::npos;
        if (isOneWord && (rest.ends_with(':') || rest.ends_with('='))) return takeSection();
        return takeElement();
    }

    bool takeApplication() {
        if (takeWord() != "application") return fail("not below an application");
        const std::string bundleIdentifier(takeWord());
        const std::string_view number = takeWord();
        std::int32_t process = 0;
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), process);
        if (error != std::errc() || end != number.data() + number.size()) return fail("not a process identifier");
        const Element root = screen.launch(bundleIdentifier, process);
        levels.push_back({root, "AXChildren"});
        if (rest.empty()) return true;
        return rest.starts_with('&') ? takeLabel(root) : fail("not a label");
    }

    bool takeSection() {
        const Level above = levels.back();
        if (above.isSection) return fail("an attribute of no element");
        const std::string name(rest.substr(0, rest.size() - 1));
        const bool isSingle = rest.ends_with('=');
        if (!isSingle) screen.set(above.owner, name, std::vector<Element>());
        levels.push_back({above.owner, name, true, isSingle});
        return true;
    }

    bool takeElement() {
        MemoryScreen::Attributes attributes;
        const std::string_view role = takeWord();
        if (role != "-") attributes.emplace("AXRole", std::string(role));
        const Element element = screen.add(std::move(attributes));
        while (!rest.empty())
            if (!(rest.front() == '&' ? takeLabel(element) : takeAttribute(element))) return false;
        const Level above = levels.back();
        if (!above.isSingle) {
            screen.append(above.owner, above.attribute, element);
        } else if (screen.value(above.owner, above.attribute)) {
            return fail("a second element where there can be one");
        } else {
            screen.set(above.owner, above.attribute, element);
        }
        levels.push_back({element, "AXChildren"});
        return true;
    }

    bool takeLabel(Element element) {
        const std::string_view label = takeWord().substr(1);
        if (!labels.emplace(label, element).second) return fail("a label for the second time");
        return true;
    }

    bool takeAttribute(Element element) {
        const std::size_t equals = rest.find('=');
        const std::string name(rest.substr(0, equals));
        if (equals == std::string_view::npos || name.find_first_of(" \"") != std::string::npos)
            return fail("not an attribute");
        rest.remove_prefix(equals + 1);
        if (rest.starts_with('"')) return takeText(element, name);
        if (rest.starts_with('[')) return takeList(element, name);
        const std::string_view word = takeWord();
        if (word.starts_with('@')) {
            references.push_back({element, name, {std::string(word.substr(1))}, false, lineNumber});
        } else if (word == "true" || word == "false") {
            screen.set(element, name, word == "true");
        } else if (word == "?") {
            screen.set(element, name, MemoryScreen::OtherKind());
        } else {
            return fail("not a value");
        }
        return true;
    }

    bool takeText(Element element, const std::string& name) {
        std::string text;
        for (std::size_t i = 1; i < rest.size(); ++i) {
            if (rest[i] == '"') {
                screen.set(element, name, text);
                rest.remove_prefix(i + 1);
                skipSpaces();
                return true;
            }
            if (rest[i] != '\\') {
                text += rest[i];
            } else if (++i < rest.size()) {
                text += rest[i] == 'n' ? '\n' : rest[i] == 't' ? '\t' : rest[i];
            }
        }
        return fail("a text without an end");
    }

    bool takeList(Element element, const std::string& name) {
        const std::size_t end = rest.find(']');
        if (end == std::string_view::npos) return fail("a list without an end");
        const std::string_view after = rest.substr(end + 1);
        rest = rest.substr(1, end - 1);
        skipSpaces();
        Reference list{element, name, {}, true, lineNumber};
        while (!rest.empty()) {
            const std::string_view word = takeWord();
            if (!word.starts_with('@')) return fail("a list of something else than elements");
            list.to.emplace_back(word.substr(1));
        }
        references.push_back(std::move(list));
        rest = after;
        skipSpaces();
        return true;
    }

    bool resolveReferences() {
        for (const Reference& reference : references) {
            lineNumber = reference.lineNumber;
            std::vector<Element> elements;
            for (const std::string& label : reference.to) {
                if (!labels.contains(label)) return fail("no element is labelled " + label);
                elements.push_back(labels.at(label));
            }
            if (reference.isList) {
                screen.set(reference.owner, reference.attribute, std::move(elements));
            } else {
                screen.set(reference.owner, reference.attribute, elements.front());
            }
        }
        return true;
    }

    std::string_view takeWord() {
        const std::string_view word = rest.substr(0, rest.find(' '));
        rest.remove_prefix(word.size());
        skipSpaces();
        return word;
    }

    void skipSpaces() { rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size())); }

    MemoryScreen& screen;
    ElementLabels labels;
    std::vector<Level> levels;
    std::vector<Reference> references;
    std::string_view rest; // the part of the line that is not read yet
    int lineNumber = 0;
    std::string problem;
};

} // namespace

std::expected<ElementLabels, std::string> showTree(MemoryScreen& screen, std::string_view text) {
    return TreeReader(screen).read(text);
}

} // namespace lumbrine
