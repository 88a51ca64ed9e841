#include "screen/pt_reconnector.h"

#include "screen/element_access.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumbrine {

using namespace std::chrono_literals;

namespace {

constexpr std::array<std::string_view, 2> peripherals{"ペリフェラル", "Peripherals"};

DescendantQuery okButton() {
    return {.role = "AXButton", .nameIs = {"OK"}, .maxDepth = 3};
}

DescendantQuery midiControllersTab() {
    return {.role = "AXRadioButton", .nameContainsAny = {"MIDIコントローラー", "MIDI Controllers"}, .maxDepth = 3};
}

// One run. It keeps to the application that was running at its start.
class PeripheralsVisit {
public:
    PeripheralsVisit(Accessibility& access, Runtime& runtime, const Bilingual& text, ElementHandle app)
        : access(access), runtime(runtime), text(text), app(std::move(app)) {}

    std::string run() {
        dismissHUIDialogs(); // first: an open alert blocks the menu
        if (!findWindow() && !pressPeripheralsMenuItem())
            return text("✗ \"Peripherals\" menu item not found (unexpected PT menu layout)",
                        "✗ メニューの「ペリフェラル」が見つかりません（PT のメニュー構成が想定外）");
        constexpr int looks = 25;
        for (int look = 0; look < looks; ++look) {
            if (const std::optional<ElementHandle> dialog = findWindow()) return confirm(*dialog);
            runtime.sleepFor(200ms);
        }
        return text("✗ The Peripherals dialog did not open", "✗ ペリフェラル画面が開きません");
    }

private:
    void dismissHUIDialogs() {
        constexpr int passes = 5;
        for (int pass = 0; pass < passes; ++pass) {
            bool dismissed = false;
            for (const ElementHandle& window : access.windows(app))
                if (dismissIfAboutHUI(window)) dismissed = true;
            if (!dismissed) return;
        }
    }

    bool dismissIfAboutHUI(const ElementHandle& window) {
        if (alertsLeft == 0 || access.textAttr(window, "AXSubrole") != "AXDialog") return false;
        std::string told;
        for (const ElementHandle& child : access.children(window))
            if (access.role(child) == "AXStaticText") told += access.textAttr(child, "AXValue");
        if (told.find("HUI") == std::string::npos) return false;
        const std::optional<ElementHandle> ok = access.firstDescendant(window, okButton());
        if (!ok) return false;
        access.press(*ok);
        --alertsLeft;
        runtime.sleepFor(400ms); // time for Pro Tools to close the alert and to show the next one
        return true;
    }

    std::optional<ElementHandle> findWindow() {
        for (const ElementHandle& window : access.windows(app))
            if (std::ranges::find(peripherals, access.title(window)) != peripherals.end()) return window;
        return std::nullopt;
    }

    bool pressPeripheralsMenuItem() {
        const std::optional<ElementHandle> menuBar = access.element(app, "AXMenuBar");
        if (!menuBar) return false;
        const std::vector<ElementHandle> bar = access.children(*menuBar);
        for (std::size_t i = 1; i < bar.size(); ++i) // the first is the Apple menu
            for (const ElementHandle& menu : access.children(bar[i]))
                for (const ElementHandle& item : access.children(menu)) {
                    const std::string title = access.title(item);
                    const auto begins = [&](std::string_view name) { return title.starts_with(name); };
                    if (std::ranges::none_of(peripherals, begins)) continue;
                    access.press(item);
                    return true;
                }
        return false;
    }

    std::string confirm(const ElementHandle& dialog) {
        if (const auto tab = access.firstDescendant(dialog, midiControllersTab())) {
            access.press(*tab);
            runtime.sleepFor(600ms); // time for Pro Tools to show the tab
        }
        const std::optional<ElementHandle> ok = access.firstDescendant(dialog, okButton());
        if (!ok)
            return text("✗ OK button not found (the Peripherals dialog is left open; please press OK manually)",
                        "✗ OK ボタンが見つかりません（ペリフェラル画面が開いたままです。手で OK を押してください）");
        access.press(*ok);
        return text("✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)",
                    "✓ ペリフェラル画面を開閉しました（PT が MIDI ポートを掴み直します）");
    }

    ElementAccess access;
    Runtime& runtime;
    const Bilingual& text;
    const ElementHandle app;
    int alertsLeft = PTReconnector::alertLimit;
};

} // namespace

std::string PTReconnector::run(Accessibility& accessibility, Runtime& runtime, const Bilingual& text) {
    std::optional<ElementHandle> app = proToolsApplication(accessibility);
    if (!app) return text("✗ Pro Tools is not running", "✗ Pro Tools が起動していません");
    return PeripheralsVisit(accessibility, runtime, text, std::move(*app)).run();
}

} // namespace lumbrine
