// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QVariant>
#include <functional>

#include "BrixtelSaver/SaverKeuze.h"
#include "hosts/bureau/AutostartWacht.h"
#include "hosts/bureau/Bureau.h"

namespace brixtel {

// The panel's state and its user's wishes, between the owner and QML. The owner carries out
// each wish, and the panel shows the state that results. While the panel is watched and the
// music is to be followed, the state listens along and polls twenty times a second;
// otherwise it runs no timer. Main thread; owner and clock must outlive it.
class PaneelStaat : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool regen READ regen WRITE zetRegen NOTIFY standChanged)
    Q_PROPERTY(QString regenStatus READ regenStatus NOTIFY standChanged)
    Q_PROPERTY(QString regenMelding READ regenMelding NOTIFY standChanged)
    Q_PROPERTY(double dichtheid READ dichtheid WRITE zetDichtheid NOTIFY standChanged)
    Q_PROPERTY(double snelheid READ snelheid WRITE zetSnelheid NOTIFY standChanged)
    Q_PROPERTY(double langzaamst READ langzaamst CONSTANT)
    Q_PROPERTY(double snelst READ snelst CONSTANT)
    Q_PROPERTY(bool zwart READ zwart WRITE zetZwart NOTIFY standChanged)
    Q_PROPERTY(QString zwartStatus READ zwartStatus NOTIFY standChanged)
    Q_PROPERTY(QString soort READ soort WRITE zetSoort NOTIFY standChanged)
    Q_PROPERTY(QString soortUitleg READ soortUitleg NOTIFY standChanged)
    Q_PROPERTY(QVariantList soorten READ soorten CONSTANT)
    Q_PROPERTY(bool voorbeeld READ voorbeeld WRITE zetVoorbeeld NOTIFY standChanged)
    Q_PROPERTY(bool muziek READ muziek WRITE zetMuziek NOTIFY standChanged)
    Q_PROPERTY(QString flits READ flits WRITE zetFlits NOTIFY standChanged)
    Q_PROPERTY(QVariantList flitsen READ flitsen CONSTANT)
    Q_PROPERTY(double rust READ rust WRITE zetRust NOTIFY standChanged)
    Q_PROPERTY(double langsteRust READ langsteRust CONSTANT)
    Q_PROPERTY(QString rustStatus READ rustStatus NOTIFY standChanged)
    Q_PROPERTY(QString rustMelding READ rustMelding NOTIFY standChanged)
    Q_PROPERTY(bool autostart READ autostart WRITE zetAutostart NOTIFY autostartChanged)
    Q_PROPERTY(QString autostartMelding READ autostartMelding NOTIFY autostartChanged)
    Q_PROPERTY(double niveau READ niveau NOTIFY geluidChanged)
    Q_PROPERTY(bool slag READ slag NOTIFY geluidChanged)
    Q_PROPERTY(bool zonderGeluid READ zonderGeluid NOTIFY geluidChanged)
    Q_PROPERTY(QString saver READ saver WRITE zetSaver NOTIFY saverChanged)
    Q_PROPERTY(QString saverNaam READ saverNaam NOTIFY saverChanged)
    Q_PROPERTY(QVariantList saverKeuzes READ saverKeuzes CONSTANT)

  public:
    PaneelStaat(Bureau& bureau, platform::MediaClock& klok);
    ~PaneelStaat() override;

    [[nodiscard]] bool regen() const { return stand().regen; }
    [[nodiscard]] QString regenStatus() const;
    [[nodiscard]] QString regenMelding() const;
    [[nodiscard]] double dichtheid() const { return stand().keuzes.dichtheid; }
    [[nodiscard]] double snelheid() const { return stand().keuzes.snelheid; }
    [[nodiscard]] double langzaamst() const { return BureauInstellingen::kLangzaamst; }
    [[nodiscard]] double snelst() const { return BureauInstellingen::kSnelst; }
    [[nodiscard]] bool zwart() const { return stand().zwart; }
    [[nodiscard]] QString zwartStatus() const;
    [[nodiscard]] QString soort() const;
    [[nodiscard]] QString soortUitleg() const;
    [[nodiscard]] QVariantList soorten() const;
    [[nodiscard]] bool voorbeeld() const { return stand().keuzes.voorbeeld; }
    [[nodiscard]] bool muziek() const { return stand().keuzes.muziek; }
    [[nodiscard]] QString flits() const { return ruweWaarde(stand().keuzes.flits); }
    [[nodiscard]] QVariantList flitsen() const;
    // Minutes; 0 is never.
    [[nodiscard]] double rust() const { return stand().keuzes.rust; }
    [[nodiscard]] double langsteRust() const { return BureauInstellingen::kLangsteRust; }
    [[nodiscard]] QString rustStatus() const;
    [[nodiscard]] QString rustMelding() const;
    // Whether the session starts the program.
    [[nodiscard]] bool autostart() const { return autostart_.isAan(); }
    // The reason why the last wish for that failed; empty where it did not.
    [[nodiscard]] const QString& autostartMelding() const { return autostartMelding_; }
    [[nodiscard]] double niveau() const { return geluid_.niveau; }
    [[nodiscard]] bool slag() const { return geluid_.slag; }
    [[nodiscard]] bool zonderGeluid() const { return geluid_.zonder; }
    [[nodiscard]] QString saver() const;
    [[nodiscard]] QString saverNaam() const;
    [[nodiscard]] QVariantList saverKeuzes() const;

    void zetRegen(bool aan);
    void zetDichtheid(double dichtheid);
    void zetSnelheid(double snelheid);
    void zetZwart(bool aan);
    void zetSoort(const QString& soort);
    void zetVoorbeeld(bool aan);
    void zetMuziek(bool aan);
    void zetFlits(const QString& flits);
    void zetRust(double minuten);
    void zetAutostart(bool aan);
    void zetSaver(const QString& keuze);

    // Every choice of the effects is as it was at first.
    Q_INVOKABLE void zetStandaard() { bureau_.zetKeuzes({}); }

    // Asks to close the panel.
    Q_INVOKABLE void sluit() { Q_EMIT sluiten(); }

    // Says whether the panel is visible to the user.
    void zetBekeken(bool bekeken);
    // Reads again the settings that other programs may have stored.
    void herlees();

    [[nodiscard]] const BureauStand& stand() const { return bureau_.stand().waarde(); }

  Q_SIGNALS:
    void standChanged();
    void geluidChanged();
    void autostartChanged();
    void saverChanged();
    void sluiten();

  private:
    struct Geluid {
        double niveau = 0;  // 0...1
        bool slag = false;
        bool zonder = false;  // no sound server found
        friend bool operator==(const Geluid&, const Geluid&) = default;
    };
    // Stores the choices with one changed.
    template <typename T>
    void kies(T BureauKeuzes::*keuze, const T& waarde);
    void volgMuziek();
    void luister();
    void meldAutostart(const QString& mis);

    Bureau& bureau_;
    platform::MediaClock& klok_;
    bool bekeken_ = false;
    SaverKeuze saver_;
    QString autostartMelding_;
    AutostartWacht autostart_;
    Geluid geluid_;
    int beat_ = 0;
    double lampTot_ = 0;  // the clock's time
    platform::Timer luisterKlok_;
    Abonnement stand_;
};

}  // namespace brixtel
