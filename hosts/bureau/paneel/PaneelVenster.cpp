// SPDX-License-Identifier: MIT
#include "hosts/bureau/paneel/PaneelVenster.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QScreen>

#include "controls/BX.h"
#include "platform/window/ScreenSpace.h"
#include "platform/window/systems/DialogFrame.h"

namespace brixtel {

namespace {
constexpr QSize kMaat(400, 760);
constexpr QSize kKleinste(300, 240);
// The window manager's frame takes at most this much of the screen, in points.
constexpr QSize kRand(8, 40);
}  // namespace

PaneelVenster::PaneelVenster(const PaneelBronnen& bronnen)
    : bronnen_(bronnen), voorbeeld_(bronnen.server, bronnen.toeval) {
    // The environment may choose another backend. The choice holds for the process.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") &&
        QQuickWindow::sceneGraphBackend().isEmpty())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

PaneelVenster::~PaneelVenster() {
    voorbeeld_.weg();
}

bool PaneelVenster::toon() {
    const bool stondEr = view_ && view_->isVisible();
    if (!view_) maak();
    if (view_->status() == QQuickView::Error) {
        view_.reset();
        staat_.reset();
        return false;
    }
    // show() would make a full-screen window small.
    if (view_->windowStates().testFlag(Qt::WindowMinimized))
        view_->setWindowStates(view_->windowStates() & ~Qt::WindowMinimized);
    view_->setVisible(true);
    view_->raise();
    view_->requestActivate();
    // A window on another virtual desktop would stay there.
    if (stondEr) bronnen_.bureau.activeer(platform::refOf(*view_));
    return true;
}

void PaneelVenster::maak() {
    staat_ = std::make_unique<PaneelStaat>(bronnen_.bureau, bronnen_.server.clock());
    view_ = std::make_unique<QQuickView>();
    bxBereid(*view_->engine());
    view_->setTitle(QStringLiteral("Instellingen"));
    view_->setColor(BXKleur::bxZwart());
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->setInitialProperties({{QStringLiteral("paneel"), QVariant::fromValue(staat_.get())}});
    view_->setSource(QUrl(QStringLiteral("qrc:/paneel/Paneel.qml")));
    const QSize past = view_->screen()->availableSize() - kRand;
    view_->resize(kMaat.boundedTo(past).expandedTo(kKleinste));
    view_->setMinimumSize(kKleinste);
    view_->installEventFilter(this);
    connect(staat_.get(), &PaneelStaat::sluiten, view_.get(), &QWindow::close);
    connect(staat_.get(), &PaneelStaat::standChanged, this, &PaneelVenster::werkVoorbeeldBij);
    if (QQuickItem* const blad = view_->rootObject())
        connect(blad, SIGNAL(plekChanged()), this, SLOT(werkVoorbeeldBij()));
}

bool PaneelVenster::eventFilter(QObject* wat, QEvent* event) {
    switch (event->type()) {
        case QEvent::Expose:
            staat_->zetBekeken(view_->isExposed());
            laatLezen();
            werkVoorbeeldBij();
            break;
        case QEvent::Move:
        case QEvent::Resize:
            laatLezen();
            break;
        case QEvent::FocusIn:
            staat_->herlees();
            laatLezen();
            break;
        case QEvent::FocusOut:
            laatLezen();
            break;
        case QEvent::Close:
            // The preview stands in this window's scene and is still being drawn.
            voorbeeld_.weg();
            break;
        case QEvent::Hide:
            staat_->zetBekeken(false);
            bronnen_.bureau.laatLezen({});
            voorbeeld_.weg();
            // The window is handling its own event, and is dropped in a later turn.
            QMetaObject::invokeMethod(this, &PaneelVenster::ruimOp, Qt::QueuedConnection);
            break;
        default:
            break;
    }
    return QObject::eventFilter(wat, event);
}

// Keeps the panel readable below the desktop rain, which lies above every window, while the
// panel is the window that the user works in. Another window may lie over a panel that is not.
void PaneelVenster::laatLezen() {
    const bool telt = view_->isExposed() && view_->isActive();
    bronnen_.bureau.laatLezen(telt ? platform::fromQt(QRectF(view_->geometry())) : QRectF());
}

void PaneelVenster::ruimOp() {
    // The user may have opened the panel again meanwhile.
    if (!view_ || view_->isVisible()) return;
    voorbeeld_.weg();
    view_.reset();
    staat_.reset();
}

void PaneelVenster::werkVoorbeeldBij() {
    const BureauStand& stand = staat_->stand();
    QQuickItem* const blad = view_->rootObject();
    if (!blad || !stand.keuzes.voorbeeld || !view_->isExposed()) return voorbeeld_.weg();
    voorbeeld_.toon(*blad, blad->property("plek").toRectF().toRect(),
                    {.soort = stand.keuzes.soort,
                     .dichtheid = stand.keuzes.dichtheid,
                     .snelheid = stand.keuzes.snelheid});
}

}  // namespace brixtel
