// SPDX-License-Identifier: MIT
// Shows every control of the kit in every state: in a window, or as a picture.
#include <QCommandLineParser>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QHoverEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <cstdio>

#include "controls/BX.h"
#include "controls/SchuifFocus.h"

namespace {

struct Opdracht {
    QString plaatje, vakken;
    QByteArray schaal;  // empty if not given
};

QVariantList scenes() {
    QVariantList lijst;
    const auto voeg = [&](QString ruw) {
        const QString waarde = ruw;
        ruw[0] = ruw[0].toUpper();
        lijst << QVariantMap{{QStringLiteral("waarde"), waarde}, {QStringLiteral("label"), ruw}};
    };
#define DRIE(ruw, ...) voeg(QStringLiteral(#ruw));
#include "worlds/Scenes.def"
    return lijst;
}

int meld(const QString& wat) {
    std::fprintf(stderr, "galerij: %s\n", qUtf8Printable(wat));
    return 1;
}

// Reads the scale before an application exists, since Qt fixes the scale at its start.
Opdracht lees(int argc, char** argv) {
    QStringList woorden;
    for (int i = 0; i < argc; ++i)
        woorden << QString::fromLocal8Bit(argv[i]);
    QCommandLineParser lezer;
    const QCommandLineOption plaatje(QStringLiteral("plaatje"),
                                     QStringLiteral("Schrijft het beeld in dit bestand."),
                                     QStringLiteral("BESTAND.png"));
    const QCommandLineOption vakken(QStringLiteral("vakken"),
                                    QStringLiteral("Schrijft een beeld van elk vak in deze map."),
                                    QStringLiteral("MAP"));
    const QCommandLineOption schaal(QStringLiteral("schaal"),
                                    QStringLiteral("Beeldpunten per punt."), QStringLiteral("S"),
                                    QStringLiteral("1"));
    lezer.addOptions({plaatje, vakken, schaal});
    const QCommandLineOption hulp = lezer.addHelpOption();
    const bool goed = lezer.parse(woorden);
    const double getal = lezer.value(schaal).toDouble();
    if (lezer.isSet(hulp)) {
        std::fputs(qUtf8Printable(lezer.helpText()), stdout);
        std::exit(0);
    }
    if (!goed || !lezer.positionalArguments().isEmpty() || !(getal >= 0.5 && getal <= 4.0)) {
        meld(goed ? QStringLiteral("een schaal ligt tussen 0.5 en 4") : lezer.errorText());
        std::exit(2);
    }
    return {lezer.value(plaatje), lezer.value(vakken),
            lezer.isSet(schaal) ? QByteArray::number(getal) : QByteArray()};
}

// The environment decides where the command line gives no value.
void stelIn(const char* naam, const QByteArray& waarde) {
    if (qEnvironmentVariableIsEmpty(naam)) qputenv(naam, waarde);
}

// Puts an item that is named after a state in that state, or a part of the item: "focus pijl".
void toonStaat(QQuickItem& item) {
    const QStringList woorden = item.objectName().split(u' ');
    QObject* wat = woorden.size() > 1 ? item.findChild<QObject*>(woorden[1]) : &item;
    if (woorden[0] == u"zweef") {
        QHoverEvent binnen(QEvent::HoverEnter, QPointF(1, 1), QPointF(1, 1), QPointF(-1, -1));
        QCoreApplication::sendEvent(wat, &binnen);
    } else if (woorden[0] == u"focus") {
        QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
        QCoreApplication::sendEvent(wat, &in);
    } else if (woorden[0] == u"hulp") {
        QMetaObject::invokeMethod(item.findChild<QObject*>(QStringLiteral("hulp")), "toon");
    }
}

void toonStaten(QQuickView& venster) {
    // The size that showing the window would give.
    venster.contentItem()->setSize(venster.size());
    const QObject& blad = *venster.rootObject();
    static const QRegularExpression staten(QStringLiteral("^(zweef|focus|hulp)\\b"));
    for (QQuickItem* item : blad.findChildren<QQuickItem*>(staten))
        toonStaat(*item);
    if (const auto* rij = blad.findChild<QQuickItem*>(QStringLiteral("wijsaan"))) {
        const QPointF plek = rij->mapToScene({60.0, 10.0});
        QMouseEvent wijs(QEvent::MouseMove, plek, plek, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&venster, &wijs);
    }
    brixtel::SchuifFocus::gedeeld().neem(QStringLiteral("focus"), nullptr);
}

bool schrijfVakken(const QImage& beeld, QQuickItem& blad, const QString& map, double schaal) {
    bool goed = true;
    for (const QQuickItem* vak : blad.findChildren<QQuickItem*>(QStringLiteral("vak"))) {
        const QRectF plek(vak->mapToScene({-4.0, -4.0}), vak->size() + QSizeF(8.0, 8.0));
        const QRectF pixels(plek.topLeft() * schaal, plek.size() * schaal);
        goed = beeld.copy(pixels.toAlignedRect())
                   .save(QStringLiteral("%1/%2.png").arg(map, vak->property("naam").toString())) &&
               goed;
    }
    return goed;
}

}  // namespace

int main(int argc, char** argv) {
    const Opdracht opdracht = lees(argc, argv);
    const bool stil = !opdracht.plaatje.isEmpty() || !opdracht.vakken.isEmpty();
    if (stil) {
        stelIn("QT_QPA_PLATFORM", "offscreen");
        stelIn("QT_QUICK_BACKEND", "software");
    }
    if (!opdracht.schaal.isEmpty()) {
        qputenv("QT_SCALE_FACTOR", opdracht.schaal);
        qunsetenv("QT_SCREEN_SCALE_FACTORS");  // would multiply with QT_SCALE_FACTOR
    }
    const QGuiApplication programma(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Galerij"));
    QQuickView venster;
    brixtel::bxBereid(*venster.engine());
    venster.setInitialProperties({{QStringLiteral("scenes"), scenes()}});
    venster.setSource(QUrl(QStringLiteral("qrc:/galerij/Galerij.qml")));
    if (venster.status() != QQuickView::Ready)
        return meld(QStringLiteral("de bediening is niet te laden"));
    toonStaten(venster);
    if (!stil) {
        venster.show();
        return QGuiApplication::exec();
    }
    const QImage beeld = venster.grabWindow();
    const double schaal = venster.effectiveDevicePixelRatio();
    if (!opdracht.plaatje.isEmpty() && !beeld.save(opdracht.plaatje))
        return meld(QStringLiteral("het beeld is niet te schrijven in ") + opdracht.plaatje);
    if (!opdracht.vakken.isEmpty() &&
        !schrijfVakken(beeld, *venster.rootObject(), opdracht.vakken, schaal))
        return meld(QStringLiteral("de beelden zijn niet te schrijven in ") + opdracht.vakken);
    return 0;
}
