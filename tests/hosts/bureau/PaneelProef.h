// SPDX-License-Identifier: MIT
// The panel of an owner on a clock moved by hand, worked as assistive technology
// does.
#pragma once

#include <QAccessible>
#include <QQuickItem>

#include "hosts/bureau/paneel/PaneelVenster.h"
#include "tests/hosts/bureau/BureauProef.h"

namespace brixtel {

// The two choices of the panel, whose options have names in common.
inline constexpr const char* kScenes = "Scène van het zwarte scherm";
inline constexpr const char* kSaver = "Wat de schermbeveiliging toont";

class PaneelProef : public BureauProef {
  protected:
    std::optional<PaneelVenster> paneel;
    int beelden = 0;

    using BureauProef::BureauProef;
    void TearDown() override { paneel.reset(); }
    void toon() {
        if (!paneel)
            paneel.emplace(PaneelBronnen{.bureau = *bureau, .server = server, .toeval = toeval});
        paneel->toon();
        QObject::connect(view(), &QQuickWindow::frameSwapped, view(), [this] { ++beelden; });
        ASSERT_TRUE(until([this] { return view()->isExposed(); }));
        ASSERT_NE(view()->rootObject(), nullptr);
    }
    [[nodiscard]] QQuickView* view() { return paneel->view(); }
    [[nodiscard]] QQuickItem* blad() { return view()->rootObject(); }
    QQuickItem* item(const char* naam) {
        return blad()->findChild<QQuickItem*>(QLatin1String(naam));
    }

    using Elke = std::function<void(QAccessibleInterface&)>;
    static void elke(QAccessibleInterface* top, const Elke& doe) {
        if (!top || top->state().invisible) return;
        doe(*top);
        for (int i = 0; i < top->childCount(); ++i)
            elke(top->child(i), doe);
    }
    // The item of that role and name, in the group of that name; none or several are a failure.
    QAccessibleInterface* vind(QAccessible::Role rol, const char* naam,
                               const char* groep = nullptr) {
        QAccessibleInterface* const in = groep ? vind(QAccessible::Grouping, groep)
                                               : QAccessible::queryAccessibleInterface(view());
        QAccessibleInterface* gevonden = nullptr;
        int aantal = 0;
        elke(in, [&](QAccessibleInterface& een) {
            if (een.role() != rol || een.text(QAccessible::Name) != QString::fromUtf8(naam)) return;
            gevonden = &een;
            ++aantal;
        });
        EXPECT_EQ(aantal, 1) << naam;
        return gevonden;
    }
    void druk(QAccessible::Role rol, const char* naam, const char* groep = nullptr) {
        if (auto* const wat = vind(rol, naam, groep))
            wat->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    void schakel(const char* naam) { druk(QAccessible::CheckBox, naam); }
    bool isAan(const char* naam) {
        auto* const wat = vind(QAccessible::CheckBox, naam);
        return wat && wat->state().checked;
    }
    bool isGekozen(const char* naam, const char* groep) {
        auto* const wat = vind(QAccessible::RadioButton, naam, groep);
        return wat && wat->state().checked;
    }
    double waarde(const char* naam) {
        auto* const wat = vind(QAccessible::Slider, naam);
        return wat ? wat->valueInterface()->currentValue().toDouble() : -1.0;
    }
    // The control's place on the screen, and in the window.
    QPoint plaats(QAccessible::Role rol, const char* naam, const char* groep = nullptr) {
        auto* const wat = vind(rol, naam, groep);
        return wat ? wat->rect().center() : QPoint();
    }

    // All there is to do now is done: no picture for so many turns.
    void kalmeer() {
        int laatste = -1, stil = 0;
        ASSERT_TRUE(until([&] {
            stil = beelden == laatste ? stil + 1 : 0;
            laatste = beelden;
            return stil > 100;
        }));
    }
};

}  // namespace brixtel
