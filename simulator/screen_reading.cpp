// SimulatedScreen: the elements that exist and the values of their attributes.
#include "simulator/screen_texts.h"
#include "simulator/simulated_screen.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumbrine {

namespace {

using Kind = ScreenElement::Kind;
using Elements = std::vector<ScreenElement>;

constexpr int roomSize = 100;

// The parts of a strip in the Mix window, from top to bottom.
constexpr int namePart = 3;
constexpr int commentPart = 4;
constexpr std::array<std::string_view, 5> stripRoles{"AXPopUpButton", "AXSlider", "AXButton", "AXPopUpButton",
                                                     "AXTextField"};

Elements row(Kind kind, int number, int count) {
    Elements elements;
    for (int part = 0; part < count; ++part)
        elements.push_back({kind, number, part});
    return elements;
}

bool isWindow(const ScreenElement& element) {
    return element.kind == Kind::editWindow || element.kind == Kind::mixWindow || element.kind == Kind::peripherals ||
           element.kind == Kind::alert;
}

bool isDialog(const ScreenElement& element) {
    return element.kind == Kind::peripherals || element.kind == Kind::alert;
}

const ScreenMenu& menuOf(const ScreenElement& element) {
    return screenMenus()[static_cast<std::size_t>(element.number)];
}

} // namespace

std::optional<ScreenValue> SimulatedScreen::attribute(const ScreenElement& element, std::string_view name,
                                                      TimePoint now) const {
    if (!isThere(element, now)) return std::nullopt;
    const auto carried = [](auto found) {
        return found ? std::optional<ScreenValue>(*std::move(found)) : std::nullopt;
    };
    if (name == "AXRole") return std::string(role(element));
    if (name == "AXTitle") return carried(title(element));
    if (name == "AXValue") return value(element);
    if (name == "AXChildren") return carried(children(element, now));
    if (name == "AXSubrole" && isWindow(element))
        return std::string(isDialog(element) ? "AXDialog" : "AXStandardWindow");
    if (name == "AXDescription" && element.kind == Kind::trackList) return std::string("Track List");
    if (name == "AXSelected" && element.kind == Kind::trackRow) return session.find(element.number)->selected;
    if (element.kind != Kind::application) return std::nullopt;
    if (name == "AXWindows") return windows(now);
    if (name == "AXMenuBar") return ScreenElement{Kind::menuBar};
    return std::nullopt;
}

bool SimulatedScreen::isThere(const ScreenElement& element, TimePoint now) const {
    switch (element.kind) {
    case Kind::application:
    case Kind::menuBar:
    case Kind::menuBarItem:
    case Kind::menu:
    case Kind::menuItem:
        return true;
    case Kind::editWindow:
    case Kind::trackList:
    case Kind::listColumn:
        return editShown && session.isOpen();
    case Kind::trackRow:
    case Kind::trackCell:
    case Kind::trackName: {
        const SimulatedTrack* track = session.find(element.number);
        if (track == nullptr || !editShown || !session.isOpen()) return false;
        return options.hiddenTracksListed || (!track->hidden && !session.hiddenByFolder(*track));
    }
    case Kind::mixWindow:
    case Kind::mixer:
        return mixShown && session.isOpen();
    case Kind::strip:
    case Kind::stripPart:
        return mixShown && session.isOpen() && stripInSight(element.number);
    case Kind::peripherals:
    case Kind::tabs:
    case Kind::tab:
    case Kind::dialogButton:
        return peripheralsOpen(now) && element.number == opening;
    case Kind::alert:
    case Kind::alertText:
    case Kind::alertButton:
        return findAlert(element.number) != nullptr;
    case Kind::furniture:
    case Kind::furnishing:
        break;
    }
    const auto window = static_cast<Kind>(element.number);
    return isThere({window, window == Kind::peripherals ? opening : 0}, now);
}

std::string_view SimulatedScreen::role(const ScreenElement& element) const {
    switch (element.kind) {
    case Kind::application:
        return "AXApplication";
    case Kind::menuBar:
        return "AXMenuBar";
    case Kind::menuBarItem:
        return "AXMenuBarItem";
    case Kind::menu:
        return "AXMenu";
    case Kind::menuItem:
        return "AXMenuItem";
    case Kind::editWindow:
    case Kind::mixWindow:
    case Kind::peripherals:
    case Kind::alert:
        return "AXWindow";
    case Kind::trackList:
        return "AXTable";
    case Kind::trackRow:
        return "AXRow";
    case Kind::trackCell:
        return "AXCell";
    case Kind::listColumn:
        return "AXColumn";
    case Kind::mixer:
    case Kind::strip:
    case Kind::furniture:
        return "AXGroup";
    case Kind::stripPart:
        return stripRoles[static_cast<std::size_t>(element.part)];
    case Kind::tabs:
        return "AXTabGroup";
    case Kind::tab:
        return "AXRadioButton";
    case Kind::dialogButton:
    case Kind::alertButton:
        return "AXButton";
    case Kind::trackName:
    case Kind::alertText:
    case Kind::furnishing:
        break;
    }
    return "AXStaticText";
}

std::optional<std::string> SimulatedScreen::title(const ScreenElement& element) const {
    const bool japanese = options.japanese;
    switch (element.kind) {
    case Kind::application:
        return "Pro Tools";
    case Kind::menuBarItem:
        return std::string(menuOf(element).title.in(japanese));
    case Kind::menuItem:
        return std::string(menuOf(element).items[static_cast<std::size_t>(element.part)].in(japanese));
    case Kind::editWindow:
        return std::string(editTitle.in(japanese)) + session.name();
    case Kind::mixWindow:
        return std::string(mixTitle.in(japanese)) + session.name();
    case Kind::peripherals:
        return std::string(peripheralsTitle.in(japanese));
    case Kind::tab:
        return std::string(peripheralsTabs()[static_cast<std::size_t>(element.part)].in(japanese));
    case Kind::dialogButton:
        return std::string(dialogButtons[static_cast<std::size_t>(element.part)].in(japanese));
    case Kind::alertButton:
        return "OK";
    default:
        return std::nullopt;
    }
}

std::optional<ScreenValue> SimulatedScreen::value(const ScreenElement& element) const {
    switch (element.kind) {
    case Kind::trackName:
        return listedName(element.number);
    case Kind::stripPart:
        if (element.part == namePart) return session.find(element.number)->name;
        if (element.part == commentPart) return session.find(element.number)->comment;
        if (element.part == 0) return std::string("Out 1-2");
        return std::nullopt;
    case Kind::tab:
        return element.part == openTab;
    case Kind::alertText:
        return findAlert(element.number)->lines[static_cast<std::size_t>(element.part)];
    default:
        return std::nullopt;
    }
}

std::optional<Elements> SimulatedScreen::children(const ScreenElement& element, TimePoint now) const {
    const auto number = element.number;
    const auto furnished = [&](Elements elements) {
        const Elements furniture = rooms(element.kind);
        elements.insert(elements.end(), furniture.begin(), furniture.end());
        return elements;
    };
    switch (element.kind) {
    case Kind::application: {
        Elements all = windows(now);
        all.push_back({Kind::menuBar});
        return all;
    }
    case Kind::menuBar: {
        Elements items;
        for (int menu = 0; menu < static_cast<int>(screenMenus().size()); ++menu)
            items.push_back({Kind::menuBarItem, menu});
        return items;
    }
    case Kind::menuBarItem:
        return Elements{{Kind::menu, number}};
    case Kind::menu: {
        Elements items = row(Kind::menuItem, number, static_cast<int>(menuOf(element).items.size()));
        if (number == setupMenu && !options.menuItem) items.erase(items.begin() + peripheralsItem);
        return items;
    }
    case Kind::editWindow:
        return furnished({{Kind::trackList}});
    case Kind::trackList: {
        Elements rows = listRows();
        for (const ScreenElement& column : row(Kind::listColumn, 0, 2))
            rows.push_back(column);
        return rows;
    }
    case Kind::trackRow:
        return row(Kind::trackCell, number, 2);
    case Kind::trackCell:
        return element.part == 0 ? Elements{{Kind::trackName, number}} : Elements{};
    case Kind::mixWindow:
        return furnished({{Kind::mixer}});
    case Kind::mixer:
        return strips();
    case Kind::strip:
        return row(Kind::stripPart, number, static_cast<int>(stripRoles.size()));
    case Kind::peripherals: {
        Elements parts{{Kind::tabs, number}, {Kind::dialogButton, number, cancelButton}};
        if (options.okButton) parts.push_back({Kind::dialogButton, number, lumbrine::okButton});
        return furnished(std::move(parts));
    }
    case Kind::tabs: {
        Elements tabs = row(Kind::tab, number, static_cast<int>(peripheralsTabs().size()));
        if (!options.midiTab) tabs.erase(tabs.begin() + midiControllersTab);
        return tabs;
    }
    case Kind::alert: {
        Elements parts = row(Kind::alertText, number, static_cast<int>(findAlert(number)->lines.size()));
        parts.push_back({Kind::alertButton, number});
        return parts;
    }
    case Kind::furniture:
        return row(Kind::furnishing, number, std::min(roomSize, options.furniture - element.part * roomSize));
    default:
        return std::nullopt;
    }
}

Elements SimulatedScreen::windows(TimePoint now) const {
    Elements all;
    for (const Alert& alert : alerts)
        all.push_back({Kind::alert, alert.number});
    if (peripheralsOpen(now)) all.push_back({Kind::peripherals, opening});
    if (mixShown && session.isOpen()) all.push_back({Kind::mixWindow});
    if (editShown && session.isOpen()) all.push_back({Kind::editWindow});
    return all;
}

Elements SimulatedScreen::rooms(Kind window) const {
    return row(Kind::furniture, static_cast<int>(window), (options.furniture + roomSize - 1) / roomSize);
}

} // namespace lumbrine
