#include "screen/pt_mix_comments.h"

#include "base/composed_text.h"
#include "screen/element_access.h"

#include <unordered_map>
#include <utility>

namespace lumbrine {

namespace {

using Comments = std::map<std::string, std::string>;

std::optional<ElementHandle> findMixWindow(ElementAccess& access, const ElementHandle& app) {
    for (const ElementHandle& window : access.windows(app)) {
        const std::string title = access.title(window);
        if (title.starts_with("ミックス") || title.starts_with("Mix")) return window;
    }
    return std::nullopt;
}

class MixWindowWalk {
public:
    MixWindowWalk(ElementAccess& access, const std::vector<std::string>& knownNames) : access(access) {
        for (const std::string& name : knownNames)
            known.emplace(composed(name), name);
    }

    // Looks at the children of an element of that depth.
    void walk(const std::vector<ElementHandle>& kids, int depth) {
        constexpr int deepest = 12; // ends the walk when elements form a circle
        if (access.ended()) return;
        std::vector<std::vector<ElementHandle>> below;
        if (takeStrip(kids, below) || depth == deepest) return;
        for (const std::vector<ElementHandle>& grandchildren : below)
            walk(grandchildren, depth + 1);
    }

    Comments found;

private:
    // What the elements show, if they are the children of one strip.
    struct Strip {
        const std::string* name = nullptr; // of a track
        bool hasTwoNames = false;
        std::optional<std::string> comment;
    };

    // Stores the comment and returns true when the elements are the children of one strip. Otherwise `below` has the
    // children of each.
    bool takeStrip(const std::vector<ElementHandle>& kids, std::vector<std::vector<ElementHandle>>& below) {
        const std::uint64_t unanswered = access.unanswered();
        Strip strip;
        for (const ElementHandle& kid : kids) {
            auto [role, value, children] = access.read(kid, {"AXRole", "AXValue", "AXChildren"});
            below.push_back(asList(std::move(children)));
            look(strip, asText(std::move(role)).value_or(""), asText(std::move(value)));
        }
        if (strip.name == nullptr || !strip.comment) return false;
        if (!strip.hasTwoNames && access.unanswered() == unanswered)
            found.insert_or_assign(*strip.name, *std::move(strip.comment));
        return true;
    }

    void look(Strip& strip, std::string_view role, std::optional<std::string> value) const {
        if (role == "AXTextField" && !strip.comment) {
            strip.comment = std::move(value).value_or("");
        } else if (role == "AXPopUpButton" && value) {
            const auto name = known.find(*value);
            if (name == known.end()) return;
            if (strip.name != nullptr && strip.name != &name->second) strip.hasTwoNames = true;
            strip.name = &name->second;
        }
    }

    ElementAccess& access;
    std::unordered_map<std::string, std::string> known; // by composed form
};

} // namespace

std::expected<Comments, NoReading> PTMixComments::read(Accessibility& accessibility, Runtime& runtime,
                                                       const std::vector<std::string>& knownNames) {
    if (knownNames.empty() || !accessibility.isTrusted()) return std::unexpected(NoReading::nothingShown);
    const std::optional<ElementHandle> app = proToolsApplication(accessibility);
    if (!app) return std::unexpected(NoReading::nothingShown);
    ElementAccess access(accessibility, runtime, timeLimit);
    MixWindowWalk comments(access, knownNames);
    if (const std::optional<ElementHandle> mix = findMixWindow(access, *app)) comments.walk(access.children(*mix), 0);
    const NoReading end = access.ended().value_or(NoReading::nothingShown);
    if (comments.found.empty() || end == NoReading::noAnswer || end == NoReading::refused) return std::unexpected(end);
    return std::move(comments.found);
}

} // namespace lumbrine
