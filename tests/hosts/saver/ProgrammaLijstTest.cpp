// SPDX-License-Identifier: MIT
#include "hosts/saver/ProgrammaLijst.h"

#include <gtest/gtest.h>

#include <QList>
#include <ostream>

using namespace brixtel::programmalijst;

namespace {

const QByteArray kOpdracht("brixtel-saver --root");

// A file as the host's own settings program writes it.
const QByteArray kVanGastheer(
    "# XScreenSaver Preferences File\n"
    "# Written by xscreensaver-settings 6.06 for iemand on Mon Jan  1 00:00:00 2024.\n\n"
    "timeout:\t0:10:00\nlock:\t\tFalse\n\nmode:\t\tone\nselected:\t1\n\n"
    "textLiteral:\tXScreenSaver\n"
    "programs:\t\t\t\t\t\t\t      \\\n"
    "- GL: \t\t\t\tsuperquadrics --root\t\t\t    \\n\\\n"
    "\t\"Qix met \xe9\"  \tqix --root --count 4 --een-lange-optie van-vele-woorden   \\\n"
    "\t\t\t\t  --nog-een\t\t\t\t    \\n\\\n"
    "-\t\t\t\tpyro --root\t\t\t\t    \\n\\\n"
    "\n\npointerHysteresis:\t10\n");

struct Geval {
    const char* naam;
    QByteArray tekst;
    QByteArray verwacht;  // after metOns(); empty when only the way back counts
};

void PrintTo(const Geval& geval, std::ostream* uit) {
    *uit << geval.naam;
}

const QList<Geval> kGevallen{
    {"OfTheHost", kVanGastheer,
     QByteArray(kVanGastheer)
         .replace("pyro --root\t\t\t\t    \\n\\\n",
                  "pyro --root\t\t\t\t    \\n\\\n  \"Brixtel\"  brixtel-saver --root  \\n\\\n")},
    {"Empty", "",
     "# Toegevoegd door brixtel-saver --aanmelden\nprograms:\t\\\n"
     "  \"Brixtel\"  brixtel-saver --root  \\n\\\n\n"},
    {"WithoutPrograms", "timeout:\t0:10:00\n", {}},
    {"WithoutProgramsAndALastLineThatRunsOn", "textFile: a \\\n", {}},
    {"WithoutALineEnd", "timeout: 1", {}},
    {"AnEmptyValue", "programs:\nlock: True\n",
     "programs: \\n\\\n  \"Brixtel\"  brixtel-saver --root\nlock: True\n"},
    {"AnEmptyValueWithoutALineEnd", "programs:", {}},
    {"AnEmptyValueThatRunsOn", "programs: \\\n\nlock: True\n",
     "programs: \\\n  \"Brixtel\"  brixtel-saver --root  \\n\\\n\nlock: True\n"},
    {"ALastProgramWithoutItsEnd", "programs: \\\n qix --root \\n\\\n  pyro --root\nlock: True\n",
     "programs: \\\n qix --root \\n\\\n  pyro --root \\n\\\n"
     "  \"Brixtel\"  brixtel-saver --root\nlock: True\n"},
    {"ALastProgramWithItsEndOnTheLastLine", "programs: \\\n pyro --root \\n\nlock: True\n", {}},
    {"ALastProgramThatRunsOnIntoNothing", "programs: \\\n pyro --root \\\n\nlock: True\n",
     "programs: \\\n pyro --root \\n\\\n  \"Brixtel\"  brixtel-saver --root \\\n\nlock: True\n"},
    {"ABackslashBeforeALineThatRunsOn", "programs: pyro --tekst \\\\\n  \\\n\nlock: True\n",
     "programs: pyro --tekst \\\\\n \\n\\\n"
     "  \"Brixtel\"  brixtel-saver --root  \\\n\nlock: True\n"},
    {"EndsWithTheFile", "programs: \\\n pyro --root \\n\\\n",
     "programs: \\\n pyro --root \\n\\\n  \"Brixtel\"  brixtel-saver --root  \\n\\\n"},
    {"AllOnOneLine", "programs: qix --root\\n \"Pyro\" pyro --root\\n\n", {}},
    {"DosLineEnds", "timeout: 1\r\nprograms: qix --root\r\n", {}},
    {"OfTwoValuesTheLast", "programs: qix\nlock: True\nPrograms: pyro\n",
     "programs: qix\nlock: True\nPrograms: pyro \\n\\\n  \"Brixtel\"  brixtel-saver --root\n"},
    {"ABlankLineWithWhiteBehindThePrograms", "programs: \\\n qix \\n\\\n \t \n", {}},
    {"AnEscapedBackslashInACommand", "programs: \\\n sh -c 'a \\\\n b' \\n\\\n\n", {}},
    {"AProgramWithOurNameThatIsAnother", "programs: \\\n \"Brixtel\" qix --root \\n\\\n\n", {}},
    {"AnArgumentWithOurName", "programs: \\\n qix --like brixtel-saver \\n\\\n\n", {}},
    {"ACommentThatRunsOn", "# programs: \\\nbrixtel-saver\nlock: True\n", {}},
};

class Lijst : public testing::TestWithParam<Geval> {};

TEST_P(Lijst, WeComeInAndWhenWeGoItIsWhatItWas) {
    const QByteArray& tekst = GetParam().tekst;
    ASSERT_EQ(onleesbareRegel(tekst), 0);
    EXPECT_EQ(staat(tekst), Staat::Afwezig);
    const QByteArray met = metOns(tekst, kOpdracht);
    if (!GetParam().verwacht.isEmpty()) {
        EXPECT_EQ(met, GetParam().verwacht);
    }
    EXPECT_EQ(staat(met), Staat::Aanwezig) << met.constData();
    EXPECT_EQ(onleesbareRegel(met), 0) << met.constData();
    EXPECT_EQ(metOns(met, kOpdracht), met) << "twice is not once";
    EXPECT_EQ(zonderOns(met), tekst) << met.constData();
}

TEST_P(Lijst, EveryOtherLineIsKept) {
    const QByteArray met = metOns(GetParam().tekst, kOpdracht);
    qsizetype vanaf = 0;
    for (const QByteArray& heel : GetParam().tekst.split('\n')) {
        const QByteArray regel = heel.trimmed();  // the white at the end of the last one is ours
        vanaf = met.indexOf(regel, vanaf);
        ASSERT_GE(vanaf, 0) << regel.constData();
        vanaf += regel.size();
    }
}

INSTANTIATE_TEST_SUITE_P(Teksten, Lijst, testing::ValuesIn(kGevallen),
                         [](const auto& geval) { return std::string(geval.param.naam); });

TEST(ProgrammaLijst, WeAreFoundHoweverTheHostOrTheUserWroteUs) {
    for (const char* regel :
         {"brixtel-saver", "\"Brixtel\"  brixtel-saver --root", "  GL: \"X: y\" brixtel-saver",
          "/opt/een/brixtel-saver --root --keuze=bol", "'/met een spatie/brixtel-saver' --root",
          "\"Zo \" brixtel-saver --root   \\\n\t\t  --fps"})
        EXPECT_EQ(staat(QByteArray("programs: \\\n qix \\n\\\n") + regel + " \\n\\\n\n"),
                  Staat::Aanwezig)
            << regel;
    for (const char* regel : {"- GL: \"Brixtel\" brixtel-saver", "-brixtel-saver"})
        EXPECT_EQ(staat(QByteArray("programs: ") + regel), Staat::Uitgezet) << regel;
    for (const char* regel : {"brixtel-saver2", "\"brixtel-saver", "", "mijn-brixtel-saver"})
        EXPECT_EQ(staat(QByteArray("programs: ") + regel), Staat::Afwezig) << regel;
}

TEST(ProgrammaLijst, OffIsNotPutOnAgain) {
    const QByteArray tekst("programs: \\\n- \"Brixtel\" brixtel-saver --root \\n\\\n qix\n");
    EXPECT_EQ(metOns(tekst, kOpdracht), tekst);
}

TEST(ProgrammaLijst, WeGoFromWhereverWeStandAndTheRestStays) {
    EXPECT_EQ(zonderOns("programs: \\\n a \\n\\\n - \"B\" brixtel-saver \\n\\\n c \\n\\\n\nx: 1\n"),
              "programs: \\\n a \\n\\\n c \\n\\\n\nx: 1\n");
    EXPECT_EQ(zonderOns("programs: brixtel-saver --root \\n\\\n c \\n\n"),
              "programs: \\\n c \\n\n");
    EXPECT_EQ(zonderOns("programs: a \\n brixtel-saver \\n c\n"), "programs: a \\n  c\n");
    EXPECT_EQ(zonderOns("programs: \\\n a \\n\\\n \"B\" brixtel-saver --root   \\\n"
                        "\t\t --keuze=bol \\n\\\n c \\n\\\n\n"),
              "programs: \\\n a \\n\\\n c \\n\\\n\n");
    EXPECT_EQ(zonderOns("programs: \\\n a \\n\\\n brixtel-saver --root\nlock: True\n"),
              "programs: \\\n a\nlock: True\n");
}

TEST(ProgrammaLijst, WeGoHoweverOftenWeStandThere) {
    const QByteArray tekst =
        "programs: \\\n brixtel-saver \\n\\\n a \\n\\\n -brixtel-saver \\n\\\n"
        "\nPROGRAMS: /x/brixtel-saver\n";
    EXPECT_EQ(zonderOns(tekst), "programs: \\\n a \\n\\\n\nPROGRAMS: \n");
}

TEST(ProgrammaLijst, WhatOthersAddedToOurValueStays) {
    const QByteArray tekst =
        metOns("lock: True\n", kOpdracht).replace("\\n\\\n\n", "\\n\\\n qix\n\n");
    const QByteArray zonder = zonderOns(tekst);
    EXPECT_TRUE(zonder.contains(" qix\n")) << zonder.constData();
    EXPECT_EQ(staat(zonder), Staat::Afwezig);
}

TEST(ProgrammaLijst, AFileOfOursAloneIsKnownToBeNobodysWhenWeGo) {
    const QByteArray eigen = nieuw(kOpdracht);
    EXPECT_EQ(onleesbareRegel(eigen), 0);
    EXPECT_EQ(staat(eigen), Staat::Aanwezig);
    EXPECT_TRUE(isLeegNieuw(zonderOns(eigen)));
    EXPECT_FALSE(isLeegNieuw(zonderOns("lock: True\n" + eigen)));
    EXPECT_FALSE(isLeegNieuw({}));
}

TEST(ProgrammaLijst, WhatIsNotTheHostsIsToldByItsLine) {
    EXPECT_EQ(onleesbareRegel("lock: True\nzo maar een zin\n"), 2);
    EXPECT_EQ(onleesbareRegel("\n\n<html>\n<a href=\"http://x\">\n"), 3);
    EXPECT_EQ(onleesbareRegel(QByteArray("\x7f"
                                         "ELF\0\1",
                                         6)),
              1);
    EXPECT_EQ(onleesbareRegel(QByteArray("lock: a\0b\n", 10)), 1);
    EXPECT_EQ(onleesbareRegel("programs: \\\n a \\n\\\n b\nc\n"), 4);
    EXPECT_EQ(onleesbareRegel("lock: True\nprograms: a\\"), 2);
    EXPECT_EQ(onleesbareRegel("programs: a\\\\"), 0);
    EXPECT_EQ(onleesbareRegel("! a\n; b\n  # c\n \t \nlock:\n*timeout: 1\n"), 0);
}

}  // namespace
