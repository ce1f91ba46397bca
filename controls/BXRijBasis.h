// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickItem>

namespace brixtel {

// An option row without a look. Its switch changes `aan` and keeps the binding.
// The owner sets `open`, on the signal `wissel`.
class BXRijBasis : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString titel READ titel WRITE zetTitel NOTIFY titelChanged)
    Q_PROPERTY(QString status READ status WRITE zetStatus NOTIFY statusChanged)
    Q_PROPERTY(bool aan READ aan WRITE zetAan NOTIFY aanChanged)
    Q_PROPERTY(bool open READ open WRITE zetOpen NOTIFY openChanged)

  public:
    using QQuickItem::QQuickItem;

    [[nodiscard]] const QString& titel() const { return titel_; }
    void zetTitel(const QString& titel);

    [[nodiscard]] const QString& status() const { return status_; }
    void zetStatus(const QString& status);

    [[nodiscard]] bool aan() const { return aan_; }
    void zetAan(bool aan);

    [[nodiscard]] bool open() const { return open_; }
    void zetOpen(bool open);

    // Applies the user's wish.
    Q_INVOKABLE void schakel(bool aan);

  Q_SIGNALS:
    void titelChanged();
    void statusChanged();
    void aanChanged();
    void openChanged();
    // The user switched the row.
    void gewisseld(bool aan);
    // The user wants the options shown or hidden.
    void wissel();

  private:
    QString titel_, status_;
    bool aan_ = false;
    bool open_ = false;
};

}  // namespace brixtel
