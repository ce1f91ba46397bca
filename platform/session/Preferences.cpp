// SPDX-License-Identifier: MIT
#include "platform/session/Preferences.h"

#include <QHash>
#include <QSettings>
#include <QStandardPaths>

namespace platform {

namespace {

QHash<QString, QString>& arguments() {
    static QHash<QString, QString> values;
    return values;
}

}  // namespace

struct Preferences::Store {
    QSettings settings;
};

std::unique_ptr<Preferences> Preferences::forModule(const QString& name) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    if (folder.isEmpty()) return nullptr;
    return std::unique_ptr<Preferences>(
        new Preferences(folder + QLatin1Char('/') + name + QStringLiteral(".conf")));
}

Preferences::Preferences(const QString& path)
    : store_(new Store{.settings = {path, QSettings::IniFormat}}) {}

Preferences::~Preferences() = default;

void Preferences::setArgument(const QString& key, const QString& value) {
    arguments().insert(key, value);
}

void Preferences::clearArgument(const QString& key) {
    arguments().remove(key);
}

std::optional<QString> Preferences::string(const QString& key) const {
    if (const auto found = arguments().constFind(key); found != arguments().constEnd())
        return *found;
    const QVariant value = store_->settings.value(key);
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    return value.toString();
}

void Preferences::setString(const QString& key, const QString& value) {
    // An unwritable value would stay in memory for every later store to read.
    if (store_->settings.isWritable()) store_->settings.setValue(key, value);
}

void Preferences::synchronize() {
    store_->settings.sync();
}

}  // namespace platform
