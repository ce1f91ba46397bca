// SPDX-License-Identifier: MIT
#include "drawing/Tekenvlak.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "drawing/Thema.h"

using brixtel::Tekenvlak;
using brixtel::Thema;

namespace {

QImage teken(QSizeF maat, double schaal, const std::function<void(Tekenvlak&)>& doe) {
    return *Thema::beeld(maat, {.schaal = schaal, .teken = doe});
}

TEST(Tekenvlak, ABlockEdgeWithinAPixelCoversItsShare) {
    const std::array vak{QRectF(1.5, 1.0, 2.0, 1.0)};
    const QImage beeld = teken({5, 3}, 1, [&](Tekenvlak& vlak) {
        vlak.zetVulkleur(Qt::white);
        vlak.vul(vak);
    });
    EXPECT_NEAR(qAlpha(beeld.pixel(1, 1)), 128, 1);
    EXPECT_EQ(qAlpha(beeld.pixel(2, 1)), 255);
    EXPECT_NEAR(qAlpha(beeld.pixel(3, 1)), 128, 1);
    EXPECT_EQ(qAlpha(beeld.pixel(4, 1)), 0);
    EXPECT_EQ(qAlpha(beeld.pixel(2, 0)), 0);
}

TEST(Tekenvlak, TouchingBlocksShowNoSeam) {
    const std::array vakken{QRectF(0.0, 0.0, 1.3, 2.0), QRectF(1.3, 0.0, 1.7, 2.0)};
    const QImage beeld = teken({3, 2}, 1, [&](Tekenvlak& vlak) { vlak.vul(vakken); });
    for (int x = 0; x < 3; ++x)
        EXPECT_EQ(qAlpha(beeld.pixel(x, 1)), 255) << x;
}

TEST(Tekenvlak, AShadowIsAGaussianUnderTheFillWhateverTheScale) {
    for (const double schaal : {1.0, 2.0}) {
        const std::array vak{QRectF(20 / schaal, 20 / schaal, 20 / schaal, 20 / schaal)};
        const QImage beeld = teken({60 / schaal, 60 / schaal}, schaal, [&](Tekenvlak& vlak) {
            vlak.zetSchaduw({.vervaging = 4.0, .kleur = QColor::fromRgbF(1, 0, 0, 0.5F)});
            vlak.zetVulkleur(Qt::green);
            vlak.vul(vak);
        });
        EXPECT_EQ(beeld.pixel(30, 30), qRgb(0, 255, 0));
        // Beside the middle of a long edge the blur is the normal distribution,
        // here with a standard deviation of two pixels.
        for (int d = 0; d < 5; ++d) {
            const double deel = 0.5 * std::erfc((d + 0.5) / 2.0 / std::sqrt(2.0));
            EXPECT_NEAR(qAlpha(beeld.pixel(19 - d, 30)), 255 * 0.5 * deel, 3) << schaal << ' ' << d;
        }
        EXPECT_EQ(qAlpha(beeld.pixel(11, 30)), 0);
    }
}

TEST(Tekenvlak, AShadowFallsWhereItsOffsetPointsInPixelsYUp) {
    const std::array vak{QRectF(2, 2, 1, 1)};
    const QImage beeld = teken({6, 6}, 1, [&](Tekenvlak& vlak) {
        vlak.zetSchaduw({.verschuiving = {1, 2}, .vervaging = 0, .kleur = Qt::red});
        vlak.zetVulkleur(Qt::green);
        vlak.vul(vak);
    });
    EXPECT_EQ(beeld.pixel(2, 3), qRgb(0, 255, 0));
    EXPECT_EQ(beeld.pixel(3, 1), qRgb(255, 0, 0));
}

// --- shapes that come again ---

// Fills that lie apart must look as each does on a picture of its own.
struct Vulling {
    QPointF bij;
    QColor kleur;
    double breedte = 4.5;
};
QImage vulAlle(const std::vector<Vulling>& vullingen, QPointF schaduw) {
    return teken({60, 40}, 1.5, [&](Tekenvlak& vlak) {
        vlak.zetSchaduw({.verschuiving = schaduw, .vervaging = 3.0, .kleur = Qt::red});
        for (const Vulling& vulling : vullingen) {
            vlak.zetVulkleur(vulling.kleur);
            vlak.vul(std::array{QRectF(vulling.bij, QSizeF(vulling.breedte, 3.25)),
                                QRectF(vulling.bij + QPointF(1.25, 5.0), QSizeF(2.0, 2.0))});
        }
    });
}

std::vector<QRgb> pixels(const QImage& beeld) {
    const auto* const eerste = reinterpret_cast<const QRgb*>(beeld.constBits());
    return {eerste, eerste + beeld.width() * beeld.height()};
}

void verwachtAlsAlleen(const std::vector<Vulling>& vullingen, QPointF schaduw) {
    std::vector<QRgb> samen(90 * 60, 0);
    for (const Vulling& vulling : vullingen) {
        const std::vector<QRgb> alleen = pixels(vulAlle({vulling}, schaduw));
        ASSERT_EQ(alleen.size(), samen.size());
        for (std::size_t i = 0; i < samen.size(); ++i)
            if (alleen[i] != 0) samen[i] = alleen[i];
    }
    EXPECT_EQ(pixels(vulAlle(vullingen, schaduw)), samen);
}

TEST(Tekenvlak, AShapeLooksTheSameEachTimeItComes) {
    verwachtAlsAlleen({{{8, 8}, Qt::green}, {{28, 8}, Qt::green}, {{46, 24}, Qt::green}}, {0, 0});
}

TEST(Tekenvlak, AShapeComesAgainInAnotherColour) {
    verwachtAlsAlleen({{{8, 8}, Qt::green}, {{28, 8}, Qt::blue}, {{46, 24}, Qt::green}}, {0, 0});
}

TEST(Tekenvlak, AShapeComesAgainBetweenTwoPixels) {
    verwachtAlsAlleen({{{8, 8}, Qt::green}, {{28.25, 8.5}, Qt::green}, {{46.5, 24}, Qt::green}},
                      {0, 0});
}

TEST(Tekenvlak, AShapeComesAgainHalfOutsideThePicture) {
    verwachtAlsAlleen({{{8, 8}, Qt::green}, {{58, 8}, Qt::green}, {{28, -3}, Qt::green}}, {0, 0});
}

TEST(Tekenvlak, AShapeComesAgainWithItsShadowBesideIt) {
    verwachtAlsAlleen({{{8, 12}, Qt::green}, {{28, 12}, Qt::green}, {{46, 24}, Qt::green}},
                      {5, -4});
}

TEST(Tekenvlak, AShapeComesAgainWithAnotherAlpha) {
    verwachtAlsAlleen({{{8, 8}, Qt::green},
                       {{28, 8}, QColor::fromRgbF(0, 1, 0, 0.5F)},
                       {{46, 24}, QColor::fromRgbF(0, 1, 0, 0.25F)}},
                      {0, 0});
}

TEST(Tekenvlak, ManyShapesComeAgainAfterOneAnother) {
    // Twelve different ones, then the first, the last and one from between.
    std::vector<Vulling> alle;
    for (const int soort : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0, 11, 5}) {
        const auto plaats = alle.size();
        alle.push_back({.bij = {2.0 + 11.5 * double(plaats % 5), 2.0 + 13.0 * double(plaats / 5)},
                        .kleur = Qt::green,
                        .breedte = 2.0 + 0.2 * soort});
    }
    verwachtAlsAlleen(alle, {0, 0});
}

TEST(Tekenvlak, AShapeThatComesAgainOnAnotherLiesOverIt) {
    const QColor half = QColor::fromRgbF(0, 1, 0, 0.5F);
    const auto vulTwee = [&](const std::vector<QPointF>& plekken) {
        return teken({12, 12}, 1, [&](Tekenvlak& vlak) {
            vlak.zetVulkleur(half);
            for (const QPointF& plek : plekken)
                vlak.vul(std::array{QRectF(plek, QSizeF(4, 4))});
        });
    };
    const QImage beeld = vulTwee({{1, 1}, {3, 3}});
    EXPECT_NEAR(qAlpha(beeld.pixel(2, 9)), 128, 1);
    EXPECT_NEAR(qAlpha(beeld.pixel(4, 7)), 192, 1);
    EXPECT_NEAR(qAlpha(beeld.pixel(6, 5)), 128, 1);
}

TEST(Tekenvlak, AnotherShadowIsCastFromThenOn) {
    const QImage beeld = teken({40, 20}, 1, [&](Tekenvlak& vlak) {
        for (const QColor& kleur : {QColor(Qt::red), QColor(Qt::blue)}) {
            vlak.zetSchaduw({.verschuiving = {0, -6}, .vervaging = 0, .kleur = kleur});
            vlak.zetVulkleur(Qt::green);
            vlak.vul(std::array{QRectF(kleur == Qt::red ? 2 : 22, 10, 4, 4)});
        }
    });
    EXPECT_EQ(beeld.pixel(4, 13), qRgb(255, 0, 0));
    EXPECT_EQ(beeld.pixel(24, 13), qRgb(0, 0, 255));
}

TEST(Tekenvlak, AFillOutsideThePictureIsHarmless) {
    const std::array vak{QRectF(-50, -50, 10, 10)};
    const QImage beeld = teken({6, 6}, 1, [&](Tekenvlak& vlak) {
        vlak.zetSchaduw({.vervaging = 2, .kleur = Qt::red});
        vlak.vul(vak);
    });
    for (int i = 0; i < 36; ++i)
        EXPECT_EQ(beeld.pixel(i % 6, i / 6), 0U);
}

}  // namespace
