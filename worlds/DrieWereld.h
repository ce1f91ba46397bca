// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <glm/vec3.hpp>

#include "connections/Gepubliceerd.h"
#include "connections/LandenTabel.h"
#include "connections/VerbindingWacht.h"
#include "platform/scene/Scene.h"
#include "platform/time/MediaClock.h"
#include "platform/time/RandomSource.h"
#include "platform/view/SceneView.h"
#include "worlds/DrieSoort.h"
#include "worlds/DrieStart.h"
#include "worlds/LandKaart.h"

namespace brixtel {

class BolLijnen;
class BolZicht;

struct DrieWereldOpties {
    bool groot = true;         // full quality; false for a small preview
    bool rustig = false;       // the globe looks at the connections every 30 s, not every 3
    bool eigenLijnen = false;  // the owner feeds the globe's lines; the watcher is left alone
};

// The objects that a world uses. The clock must outlive the world's views; watcher and
// table must outlive the world. The world draws one seed from the source.
struct DrieWereldBronnen {
    platform::MediaClock& klok;
    platform::RandomSource& toeval;
    VerbindingWacht* wacht = nullptr;  // none: the program's shared one, on first use
    LandenTabel* landen = nullptr;     // the same
    const LandKaart* kaart = nullptr;  // the same; only read while the world is made
};

// One self-running 3D scene of one kind. It builds the scene, shows it in views, takes
// still pictures of it, and switches the connection watch on and off for the globe. The
// scene's content and motion exist from creation to destruction; it moves only while a view
// plays it. Its owner keeps the world alive while it is shown. Main thread only; needs a
// QGuiApplication.
//
// The same seed and the same times give the same picture, whatever else draws from the same
// source meanwhile.
class DrieWereld {
  public:
    DrieWereld(DrieSoort soort, const DrieWereldOpties& opties, const DrieWereldBronnen& bronnen);
    ~DrieWereld();
    DrieWereld(const DrieWereld&) = delete;
    DrieWereld& operator=(const DrieWereld&) = delete;

    [[nodiscard]] const std::shared_ptr<platform::Scene>& scene() const { return scene_; }
    [[nodiscard]] DrieSoort soort() const { return soort_; }
    [[nodiscard]] bool groot() const { return opties_.groot; }
    [[nodiscard]] bool rustig() const { return opties_.rustig; }
    [[nodiscard]] bool eigenLijnen() const { return opties_.eigenLijnen; }

    // The globe, with the present connections in it; none in the other kinds.
    [[nodiscard]] const platform::NodePtr& bol() const { return bol_; }
    [[nodiscard]] const platform::NodePtr& lijnenNode() const { return lijnenNode_; }

    // The key of this world's registration with the watcher: "bol-" and a random UUID in
    // upper case, made on first use.
    [[nodiscard]] const std::string& wachtSleutel();

    // Makes a view, in points, that plays the scene. The caller owns the view.
    [[nodiscard]] std::shared_ptr<platform::SceneView> maakView(const QRectF& frame);

    // Reports that the world is shown or hidden. A globe that its owner does not feed
    // registers with the watcher or ends that; other worlds do nothing. Nothing is paused
    // here.
    void actief(bool aan);

    // Shows these connections on the globe, in place of the last ones; does nothing in the
    // other kinds.
    void zetLijnen(const std::vector<Lijn>& lijnen);

    struct PlaatjeOpties {
        QSizeF maat;          // points
        double na = 0.0;      // seconds since the scene's start
        double schaal = 1.0;  // pixels per point
    };
    // The scene at that time, at full quality. The call moves the scene to that time; a
    // scene that is already further stays there. A null image where nothing can draw the
    // scene.
    [[nodiscard]] QImage plaatje(const PlaatjeOpties& opties);

    // Draws one snapshot of a draw list.
    struct Opname {
        QSizeF maat;  // points
        double schaal;
        int monsters;  // samples per pixel
    };
    using Fotograaf = std::function<QImage(const platform::DrawList&, const Opname&)>;
    // The same picture, drawn by `fotograaf`.
    [[nodiscard]] QImage plaatje(const PlaatjeOpties& opties, const Fotograaf& fotograaf);

    // --- the parts of the scenes ---

    struct GloedOpties {
        bool add = false;  // adds its light to what lies behind, and hides nothing
    };
    // An unlit, double-sided material.
    [[nodiscard]] static platform::MaterialPtr gloed(platform::Contents kleur, GloedOpties opties);
    [[nodiscard]] static platform::MaterialPtr gloed(platform::Contents kleur) {
        return gloed(std::move(kleur), GloedOpties{});
    }

    // A picture of the block digit 1 (true) or 0, 28 × 38 points, two pixels to the point.
    // None where memory is short.
    [[nodiscard]] static std::optional<QImage> cijferBeeld(bool een, const QColor& kleur);

    struct CijferOpties {
        QColor kleur;
        double hoogte = 1.0;
    };
    // A plane with one glowing block digit.
    [[nodiscard]] static platform::GeometryPtr cijferVlak(bool een, const CijferOpties& opties);

    struct PuntOpties {
        double r = 1.0;
    };
    // The point at a latitude and longitude, in degrees: (0, 0) is +z, the north pole +y,
    // and east lies towards +x.
    [[nodiscard]] static glm::dvec3 punt(double breedte, double lengte, PuntOpties opties);

    struct BoogOpties {
        glm::dvec3 van;  // of unit length, as is `naar`
        glm::dvec3 naar;
        int stappen = 40;
    };
    // A great circle's arc, lifted off the unit sphere; a longer arc is lifted higher. Only
    // the two ends, not lifted, where they coincide.
    [[nodiscard]] static std::vector<glm::dvec3> boog(const BoogOpties& opties);

    struct PuntenOpties {
        double grootte = 1.0;  // points on screen across
        QColor kleur;
        double hoogsteDeel = 0.0;  // the most of the picture's height; 0: no limit
    };
    // A glowing cloud of dots, and glowing lines between the points of each pair.
    [[nodiscard]] static platform::GeometryPtr punten(const std::vector<glm::dvec3>& punten,
                                                      const PuntenOpties& opties);
    [[nodiscard]] static platform::GeometryPtr lijnen(const std::vector<glm::dvec3>& einden,
                                                      const QColor& kleur);

  private:
    struct CameraOpties {
        double z = 0.0;
        double zicht = 60.0;  // vertical, degrees
        double bloom = 0.0;
        double breedte = 0.0;  // half the subject's width, at a distance of 1
    };
    platform::NodePtr camera(const CameraOpties& opties);
    void zetMist(const DrieMist& mist);

    void bouw();
    // The builders, each in its scene's own source.
#define DRIE(ruw, naam, nl, en, uitleg, bouwer, ...) void bouwer();
#include "worlds/Scenes.def"

    [[nodiscard]] bool gebruiktWacht() const;
    [[nodiscard]] VerbindingWacht& wacht() const;
    [[nodiscard]] LandenTabel& landen() const;
    [[nodiscard]] const LandKaart& kaart() const;

    const std::shared_ptr<platform::Scene> scene_ = std::make_shared<platform::Scene>();
    const DrieSoort soort_;
    const DrieWereldOpties opties_;
    platform::MediaClock& klok_;
    VerbindingWacht* const wacht_;
    LandenTabel* const landen_;
    const LandKaart* const kaart_;
    platform::RandomSource toeval_;
    platform::NodePtr oog_;            // the camera
    std::shared_ptr<BolZicht> zicht_;  // the globe's
    platform::NodePtr bol_;
    platform::NodePtr lijnenNode_;
    std::shared_ptr<BolLijnen> bolLijnen_;
    Abonnement abonnement_;
    std::string wachtSleutel_;
};

}  // namespace brixtel
