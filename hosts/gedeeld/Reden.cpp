// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Reden.h"

#include <cerrno>

namespace brixtel {

QString reden(int nummer) {
    switch (nummer) {
        case EACCES:
        case EPERM:
            return QStringLiteral("dat mag niet");
        case ENOENT:
            return QStringLiteral("dat is er niet");
        case ENOTDIR:
            return QStringLiteral("de map is geen map");
        case EISDIR:
            return QStringLiteral("dat is een map");
        case ENOSPC:
        case EDQUOT:
            return QStringLiteral("er is geen plaats meer op de schijf");
        case EROFS:
            return QStringLiteral("die schijf is alleen te lezen");
        case ELOOP:
            return QStringLiteral("de verwijzing gaat in het rond, of is van een ander");
        case ENAMETOOLONG:
            return QStringLiteral("de naam is te lang");
        case ENOTSUP:
            return QStringLiteral("dat is geen gewoon bestand");
        case EFBIG:
            return QStringLiteral("dat is te groot");
        case EMFILE:
        case ENFILE:
            return QStringLiteral("er staan te veel bestanden open");
        case ENOMEM:
            return QStringLiteral("er is te weinig geheugen");
        case EIO:
            return QStringLiteral("de schijf hapert");
        case EPIPE:
        case ENXIO:
            return QStringLiteral("er is niemand die het leest");
        case EBADF:
            return QStringLiteral("dat staat niet open");
        case EBUSY:
        case ETXTBSY:
            return QStringLiteral("dat is in gebruik");
        default:
            // The C library's texts are in the language of the system.
            return QStringLiteral("het systeem meldt fout %1").arg(nummer);
    }
}

}  // namespace brixtel
