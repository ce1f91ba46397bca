// SPDX-License-Identifier: MIT
#include "platform/session/Preferences.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <utility>

#include "platform/files/InputFile.h"
#include "platform/files/OutputFile.h"
#include "platform/session/ConfigurationFolder.h"
#include "platform/session/IniText.h"

namespace platform {

namespace {

QHash<QString, QString>& arguments() {
    static QHash<QString, QString> values;
    return values;
}

// The values that were set and are not in their file yet, by the file's path and the key: one
// store's value shows in every other.
QHash<QString, QHash<QString, QString>>& unwritten() {
    static QHash<QString, QHash<QString, QString>> values;
    return values;
}

// Empty where the user has no configuration folder.
QString pathOf(const QString& name) {
    const QString folder = configurationFolder();
    if (folder.isEmpty()) return {};
    return folder + QLatin1Char('/') + name + QStringLiteral(".conf");
}

FileContent contentOf(const QString& path) {
    return readRegularFile(QFile::encodeName(path).toStdString(), Preferences::kLargest);
}

IniText iniOf(const FileContent& content) {
    return IniText(QByteArray::fromStdString(content.bytes));
}

// Keeps other programs of this system from changing files in the folder. Where
// a folder cannot be locked, the last to write wins.
class FolderLock {
  public:
    explicit FolderLock(const QString& folder)
        : number_(open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (number_ >= 0) flock(number_, LOCK_EX);
    }
    ~FolderLock() {
        if (number_ >= 0) close(number_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    const int number_;
};

}  // namespace

std::unique_ptr<Preferences> Preferences::forModule(const QString& name) {
    const QString path = pathOf(name);
    if (path.isEmpty()) return nullptr;
    return std::unique_ptr<Preferences>(new Preferences(path));
}

int Preferences::problem(const QString& name, QString& path) {
    path = pathOf(name);
    if (path.isEmpty()) return 0;
    const int error = contentOf(path).error;
    return error == ENOENT ? 0 : error;
}

Preferences::Preferences(QString path) : path_(std::move(path)) {}

void Preferences::setArgument(const QString& key, const QString& value) {
    arguments().insert(key, value);
}

void Preferences::clearArgument(const QString& key) {
    arguments().remove(key);
}

std::optional<QString> Preferences::string(const QString& key) const {
    const auto waiting = unwritten().value(path_);
    for (const auto* values : {&std::as_const(arguments()), &waiting})
        if (const auto found = values->constFind(key); found != values->constEnd()) return *found;
    return iniOf(contentOf(path_)).value(key.toUtf8());
}

void Preferences::setString(const QString& key, const QString& value) {
    unwritten()[path_].insert(key, value);
}

// Values that cannot be written are forgotten: later stores would read them.
int Preferences::synchronize() {
    const auto values = unwritten().take(path_);
    if (values.isEmpty()) return 0;
    const QString folder = QFileInfo(path_).path();
    if (!QDir().mkpath(folder)) return EACCES;
    const FolderLock lock(folder);
    const FileContent content = contentOf(path_);
    // Another kind of file, or one that may not be read, is not ours to replace.
    if (content.error != 0 && content.error != ENOENT) return content.error;
    IniText ini = iniOf(content);
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        ini.setValue(entry.key().toUtf8(), entry.value());
    return replaceFile(QFile::encodeName(path_).toStdString(), ini.text().toStdString());
}

}  // namespace platform
