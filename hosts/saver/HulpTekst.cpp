// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Opsomming.h"
#include "hosts/saver/KeuzeWoorden.h"
#include "hosts/saver/Opdracht.h"
#include "platform/window/systems/WindowSystems.h"

namespace brixtel {

QString hulpTekst() {
    return QStringLiteral(R"(brixtel-saver: schermbeveiliging in groen op zwart

Zonder opties schermvullend op elk scherm, tot een toets, een klik of een
echte beweging van de muis. De toets i toont daar, en in een eigen venster,
het venster met de instellingen. In een eigen venster vult F11 of een dubbelklik
het scherm, gaat Escape terug en dan weg, en houdt Ctrl+Q op.

Opties mogen met één of twee streepjes; een waarde volgt na = of als het volgende
woord.

Waar:
  --venster[=BxH]        in een gewoon venster (1280x720)
  --root                 in het venster van de gastheer, of op de achtergrond
  --window-id=NUMMER     in het venster met dit nummer (hexadecimaal of decimaal)
  --plaatje=BESTAND.png  een stilstaand beeld in een bestand; dat kan ook
                         zonder scherm. Met --keuze, en naar wens:
      --maat=BxH         in punten (1920x1080); hoogstens 67108864 beeldpunten
      --schaal=S         beeldpunten per punt (1)
      --na=SECONDEN      zo lang na het begin (6)
      --zaad=N           hetzelfde getal geeft hetzelfde beeld
      --lijnen=BESTAND   de lijnen van de wereldbol, zoals --verbindingen=json
                         ze afdrukt, in plaats van die van nu
  --film=BESTAND         een film van de scène, op .webm, .mp4, .gif of .webp; dat
                         kan ook zonder scherm, en heeft ffmpeg nodig. Met --keuze
                         en --seconden, en naar wens als --plaatje, en:
      --fps=N            beelden per seconde (30)
      --lus              in plaats van --seconden: zo lang dat het eind weer het
                         begin is; alleen met %3

Wat:
  --keuze=KEUZE          %1
  --voorvertoning        in de kwaliteit van een klein voorbeeld
  --tekenaar=WELKE       gl, cpu of auto (auto)
  --venstersysteem=WELK  %2 of auto (auto: het eerste
                         dat er is)
  --seconden=N           houdt na N seconden vanzelf op
  --fps                  toont het aantal beelden per seconde
  --volle-snelheid       alle beelden, ook op de accu, en zo scherp als het gaat:
                         zonder grens aan wat de processor doet
  --meet                 drukt aan het eind één regel JSON met metingen af

Verder:
  --instellingen         het venster met de instellingen
      --boven=NUMMER     bij het venster met dit nummer; niet bij een plaatje
  --instellingen=B.png   er een plaatje van, dat kan ook zonder scherm; met
                         --schaal=S naar wens
  --verbindingen[=json]  met welke landen deze machine nu verbonden is
  --aanmelden            zet Brixtel in de lijst van xscreensaver
  --afmelden             haalt Brixtel uit die lijst
  --hervat               laat de schermvullende saver van dit scherm ophouden,
                         als er een loopt
  --versie, -V           het versienummer
  --help, -h             deze tekst
)")
        .arg(vouw(opsomming(keuzeWoorden(), QLatin1String("of")) +
                      QStringLiteral("; alleen voor deze keer, er wordt niets bewaard"),
                  kHulpKolom),
             platform::windowSystemNames().join(QStringLiteral(", ")),
             opsomming(keuzesMetLus(), QLatin1String("of")));
}

}  // namespace brixtel
