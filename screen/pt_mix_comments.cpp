#include "screen/pt_mix_comments.h"

#include "screen/element_access.h"

#include <unordered_set>
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
    MixWindowWalk(ElementAccess& access, const std::vector<std::string>& knownNames)
        : access(access), known(knownNames.begin(), knownNames.end()) {}

    void walk(const ElementHandle& element, int depth) {
        constexpr int deepest = 12; // ends the walk when elements form a circle
        if (depth > deepest) return;
        const std::vector<ElementHandle> kids = access.children(element);
        if (takeStrip(kids)) return;
        for (const ElementHandle& kid : kids)
            walk(kid, depth + 1);
    }

    Comments found;

private:
    // Stores the comment and returns true when the elements are the children of one strip.
    bool takeStrip(const std::vector<ElementHandle>& kids) {
        std::optional<std::string> name;
        std::optional<std::string> comment;
        for (const ElementHandle& kid : kids) {
            const std::string role = access.role(kid);
            if (role == "AXPopUpButton") {
                std::optional<std::string> shown = access.stringAttr(kid, "AXValue");
                if (shown && known.contains(*shown)) name = std::move(shown);
            } else if (role == "AXTextField" && !comment) {
                comment = access.textAttr(kid, "AXValue");
            }
        }
        if (!name || !comment) return false;
        found.insert_or_assign(std::move(*name), std::move(*comment));
        return true;
    }

    ElementAccess& access;
    const std::unordered_set<std::string> known;
};

} // namespace

std::optional<Comments> PTMixComments::read(Accessibility& accessibility, const std::vector<std::string>& knownNames) {
    if (knownNames.empty() || !accessibility.isTrusted()) return std::nullopt;
    const std::optional<ElementHandle> app = proToolsApplication(accessibility);
    if (!app) return std::nullopt;
    ElementAccess access(accessibility);
    const std::optional<ElementHandle> mix = findMixWindow(access, *app);
    if (!mix) return std::nullopt;
    MixWindowWalk comments(access, knownNames);
    comments.walk(*mix, 0);
    if (comments.found.empty()) return std::nullopt;
    return std::move(comments.found);
}

} // namespace lumbrine
