// SPDX-License-Identifier: MIT
// The text of a settings file: lines `key=value` in sections. Private to
// platform/session.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <optional>

namespace platform {

// The keys before any section and those of [General] are the file's own; all
// other lines are kept as they are. Every text can be parsed.
class IniText {
  public:
    explicit IniText(const QByteArray& text);

    // The value of the last line with that key. Only strings are values: a list is none, nor
    // is a text written with an @ and a kind.
    [[nodiscard]] std::optional<QString> value(const QByteArray& key) const;
    void setValue(const QByteArray& key, const QString& value);

    [[nodiscard]] QByteArray text() const;

  private:
    [[nodiscard]] qsizetype lineOf(const QByteArray& key) const;
    [[nodiscard]] qsizetype placeForNew();

    QByteArrayList lines_;
};

}  // namespace platform
