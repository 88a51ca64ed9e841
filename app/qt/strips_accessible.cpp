#include "app/qt/strips_accessible.h"

#include "app/qt/strips_view.h"
#include "app/qt/texts.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace lumbrine {

namespace {

// Looks everything up in the view when it is asked, so it has nothing to keep up to date.
class StripElement final : public QAccessibleInterface, public QAccessibleValueInterface {
public:
    StripElement(StripsView& view, int number) : view(view), number(number) {}

    bool isValid() const override { return number < view.count(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&view); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Slider; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text kind) const override {
        if (!isValid()) return {};
        if (kind == QAccessible::Name) return shown(view.strip(number).spokenName);
        if (kind == QAccessible::Value) return shown(view.strip(number).spokenValue);
        if (kind == QAccessible::Description) return shown(view.strip(number).spokenLights);
        return {};
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    }
    QVariant currentValue() const override { return isValid() ? view.strip(number).percent() : 0; }
    void setCurrentValue(const QVariant&) override {} // read only
    QVariant maximumValue() const override { return 100.0; }
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override { return 1.0; }

    QRect rect() const override {
        if (!isValid()) return {};
        const QRect place = view.placeOf(static_cast<std::size_t>(number));
        return {view.mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.readOnly = true;
        state.focusable = true;
        state.focused = view.hasFocus() && view.current() == number;
        state.selected = isValid() && view.strip(number).select;
        state.invisible = !view.isVisible();
        return state;
    }

private:
    StripsView& view;
    const int number;
};

class StripsElement final : public QAccessibleWidget {
public:
    explicit StripsElement(StripsView& view) : QAccessibleWidget(&view, QAccessible::Grouping), view(view) {}
    ~StripsElement() override {
        for (const QAccessible::Id id : elements)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return view.count(); }
    QAccessibleInterface* child(int number) const override {
        if (number < 0 || number >= view.count()) return nullptr;
        while (static_cast<int>(elements.size()) <= number)
            elements.push_back(
                QAccessible::registerAccessibleInterface(new StripElement(view, static_cast<int>(elements.size()))));
        return QAccessible::accessibleInterface(elements[static_cast<std::size_t>(number)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int i = 0; i < view.count(); ++i)
            if (this->child(i) == child) return i;
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < view.count(); ++i)
            if (child(i)->rect().contains(x, y)) return child(i);
        return nullptr;
    }
    QAccessibleInterface* focusChild() const override { return view.hasFocus() ? child(view.current()) : nullptr; }

private:
    StripsView& view;
    mutable std::vector<QAccessible::Id> elements; // made when somebody asks
};

QAccessibleInterface* makeElement(const QString& /*className*/, QObject* object) {
    auto* view = dynamic_cast<StripsView*>(object);
    return view == nullptr ? nullptr : new StripsElement(*view);
}

} // namespace

void describeStripsToScreenReaders() {
    static const bool installed = [] {
        QAccessible::installFactory(makeElement);
        return true;
    }();
    static_cast<void>(installed);
}

} // namespace lumbrine
