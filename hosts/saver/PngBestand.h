// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

namespace brixtel {

// Makes the picture, as PNG, the whole content of the file. Returns the error as text for
// the user; empty on success. Any thread.
[[nodiscard]] QString schrijfPng(const QImage& beeld, const QString& naam);

}  // namespace brixtel
