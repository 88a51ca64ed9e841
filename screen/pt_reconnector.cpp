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
    using Outcome = PTReconnector::Outcome;

    PeripheralsVisit(Accessibility& screen, Runtime& runtime, const Bilingual& text, ElementHandle app)
        : screen(screen), runtime(runtime), text(text), app(std::move(app)),
          readingEnd(runtime.now() + PTReconnector::readingLimit),
          access(screen, runtime, PTReconnector::readingLimit) {}

    Outcome run() {
        dismissHUIDialogs(); // first: an open alert blocks the menu
        if (!findWindow(access) && !pressPeripheralsMenuItem())
            return failed(access.ended(),
                          text("✗ \"Peripherals\" menu item not found (unexpected PT menu layout)",
                               "✗ メニューの「ペリフェラル」が見つかりません（PT のメニュー構成が想定外）"));
        return awaitDialog();
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
        for (const ElementHandle& child : access.children(window)) {
            auto [role, value] = access.read(child, {"AXRole", "AXValue"});
            if (asText(std::move(role)) == "AXStaticText") told += asText(std::move(value)).value_or("");
        }
        if (told.find("HUI") == std::string::npos) return false;
        const std::optional<ElementHandle> ok = access.firstDescendant(window, okButton());
        if (!ok) return false;
        access.press(*ok);
        --alertsLeft;
        runtime.sleepFor(400ms); // time for Pro Tools to close the alert and to show the next one
        return true;
    }

    // Pro Tools may be too busy to answer while it opens the dialog, so each look starts with new patience.
    Outcome awaitDialog() {
        const TimePoint end = std::min(runtime.now() + 5s, readingEnd);
        std::optional<NoReading> lastEnd;
        while (runtime.now() < end) {
            ElementAccess look(screen, runtime, readingEnd - runtime.now());
            if (const std::optional<ElementHandle> dialog = findWindow(look)) return confirm(*dialog);
            lastEnd = look.unanswered() > 0 ? look.ended().value_or(NoReading::noAnswer) : look.ended();
            runtime.sleepFor(200ms);
        }
        return failed(lastEnd, text("✗ The Peripherals dialog did not open", "✗ ペリフェラル画面が開きません"));
    }

    std::optional<ElementHandle> findWindow(ElementAccess& look) const {
        for (const ElementHandle& window : look.windows(app))
            if (std::ranges::find(peripherals, look.title(window)) != peripherals.end()) return window;
        return std::nullopt;
    }

    // What was not found, unless it could not be looked for.
    Outcome failed(std::optional<NoReading> end, std::string notFound) const {
        if (end == NoReading::refused)
            return {.line = text("✗ macOS does not let Lumbrine read Pro Tools' windows",
                                 "✗ macOS が Pro Tools の画面の読み取りを拒否しました"),
                    .refused = true};
        if (end && end != NoReading::nothingShown)
            return {
                .line = text(
                    "✗ Pro Tools does not answer (it may be busy); try again when it does",
                    "✗ Pro Tools が応答しません（処理中かもしれません）。応答するようになったらやり直してください")};
        return {.line = std::move(notFound)};
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

    Outcome confirm(const ElementHandle& dialog) {
        if (const auto tab = access.firstDescendant(dialog, midiControllersTab())) {
            access.press(*tab);
            runtime.sleepFor(600ms); // time for Pro Tools to show the tab
        }
        const std::optional<ElementHandle> ok = access.firstDescendant(dialog, okButton());
        if (!ok)
            return {.line = text(
                        "✗ OK button not found (the Peripherals dialog is left open; please press OK manually)",
                        "✗ OK ボタンが見つかりません（ペリフェラル画面が開いたままです。手で OK を押してください）")};
        access.press(*ok);
        return {.line = text("✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)",
                             "✓ ペリフェラル画面を開閉しました（PT が MIDI ポートを掴み直します）")};
    }

    Accessibility& screen;
    Runtime& runtime;
    const Bilingual& text;
    const ElementHandle app;
    const TimePoint readingEnd;
    ElementAccess access;
    int alertsLeft = PTReconnector::alertLimit;
};

} // namespace

PTReconnector::Outcome PTReconnector::run(Accessibility& accessibility, Runtime& runtime, const Bilingual& text) {
    std::optional<ElementHandle> app = proToolsApplication(accessibility);
    if (!app) return {.line = text("✗ Pro Tools is not running", "✗ Pro Tools が起動していません")};
    return PeripheralsVisit(accessibility, runtime, text, *std::move(app)).run();
}

} // namespace lumbrine
