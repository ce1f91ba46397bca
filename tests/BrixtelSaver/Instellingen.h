// SPDX-License-Identifier: MIT
// A user's configuration folder of a test's own.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "BrixtelSaver/SaverInstellingen.h"

namespace brixtel {

class EigenInstellingen {
  public:
    EigenInstellingen() { qputenv("XDG_CONFIG_HOME", QFile::encodeName(map_.path())); }
    ~EigenInstellingen() { qunsetenv("XDG_CONFIG_HOME"); }

    [[nodiscard]] QString bestand() const {
        return map_.path() + u'/' + SaverInstellingen::moduleNaam + QStringLiteral(".conf");
    }
    void schrijf(const QByteArray& inhoud) const {
        QFile doel(bestand());
        doel.open(QIODevice::WriteOnly);
        doel.write(inhoud);
    }
    [[nodiscard]] QByteArray lees() const {
        QFile bron(bestand());
        return bron.open(QIODevice::ReadOnly) ? bron.readAll() : QByteArray();
    }

  private:
    QTemporaryDir map_;
};

}  // namespace brixtel
