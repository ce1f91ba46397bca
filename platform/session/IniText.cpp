// SPDX-License-Identifier: MIT
#include "platform/session/IniText.h"

#include <algorithm>

namespace platform {

namespace {

const QByteArray kOwnSection = QByteArrayLiteral("[General]");

bool isSection(const QByteArray& line) {
    return line.trimmed().startsWith('[');
}

bool isOwnSection(const QByteArray& line) {
    return line.trimmed().compare(kOwnSection, Qt::CaseInsensitive) == 0;
}

QByteArray keyOf(const QByteArray& line) {
    const qsizetype equals = line.indexOf('=');
    return equals < 0 || line.trimmed().startsWith(';') ? QByteArray()
                                                        : line.left(equals).trimmed();
}

// The character that an escape stands for; a null character for an escape with a
// number, or for a letter that stands for itself.
char escaped(char letter) {
    switch (letter) {
        case 'a':
            return '\a';
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case 'v':
            return '\v';
        default:
            return '\0';
    }
}

// Reads one value, character by character.
class ValueReader {
  public:
    explicit ValueReader(const QByteArray& raw) : raw_(QString::fromUtf8(raw.trimmed())) {}

    // The value; none for a list.
    std::optional<QString> read() {
        while (at_ < raw_.size()) {
            const QChar c = raw_.at(at_++);
            if (c == u'"')
                quoted_ = !quoted_;
            else if (c == u'\\')
                readEscape();
            else if (c == u',' && !quoted_)
                return std::nullopt;
            else
                value_ += c;
        }
        return value_;
    }

  private:
    void readEscape() {
        if (at_ == raw_.size()) return;
        const QChar c = raw_.at(at_++);
        if (c == u'x') return readNumber(16, 8);
        if (c >= u'0' && c <= u'7') {
            --at_;
            return readNumber(8, 3);
        }
        const char plain = escaped(c.toLatin1());
        value_ += plain != '\0' ? QChar(QLatin1Char(plain)) : c;
    }
    void readNumber(int base, int most) {
        qsizetype end = at_;
        while (end < raw_.size() && end - at_ < most && isDigit(raw_.at(end), base))
            ++end;
        value_ += QChar(static_cast<char16_t>(raw_.mid(at_, end - at_).toUInt(nullptr, base)));
        at_ = end;
    }
    static bool isDigit(QChar c, int base) {
        bool isOne = false;
        (void)QString(c).toUInt(&isOne, base);
        return isOne;
    }

    const QString raw_;
    qsizetype at_ = 0;
    bool quoted_ = false;
    QString value_;
};

std::optional<QString> readValue(const QByteArray& raw) {
    const auto value = ValueReader(raw).read();
    if (!value || !value->startsWith(u'@')) return value;
    // A string that begins with @ is written with a second @.
    if (value->startsWith(QLatin1String("@@"))) return value->mid(1);
    return std::nullopt;
}

QByteArray writtenValue(const QString& value) {
    QString written;
    bool quote = value.startsWith(u' ') || value.endsWith(u' ');
    for (const QChar c : value.startsWith(u'@') ? u'@' + value : value) {
        if (c == u'"' || c == u'\\') {
            written += u'\\';
            written += c;
        } else if (c < u' ' || c == QChar(0x7f)) {
            // Three digits, so that the next character is never taken for a fourth.
            written += QStringLiteral("\\%1").arg(c.unicode(), 3, 8, QLatin1Char('0'));
        } else {
            written += c;
        }
        quote = quote || c == u',' || c == u';' || c == u'=';
    }
    return (quote ? u'"' + written + u'"' : written).toUtf8();
}

}  // namespace

IniText::IniText(const QByteArray& text) : lines_(text.split('\n')) {
    if (lines_.last().isEmpty()) lines_.removeLast();
}

qsizetype IniText::lineOf(const QByteArray& key) const {
    qsizetype found = -1;
    bool own = true;
    for (qsizetype i = 0; i < lines_.size(); ++i) {
        if (isSection(lines_.at(i)))
            own = isOwnSection(lines_.at(i));
        else if (own && keyOf(lines_.at(i)) == key)
            found = i;
    }
    return found;
}

std::optional<QString> IniText::value(const QByteArray& key) const {
    const qsizetype line = lineOf(key);
    if (line < 0) return std::nullopt;
    return readValue(lines_.at(line).mid(lines_.at(line).indexOf('=') + 1));
}

// The place after the last line of [General]; adds that section where it is absent.
qsizetype IniText::placeForNew() {
    const auto section = std::find_if(lines_.begin(), lines_.end(), isOwnSection);
    if (section == lines_.end()) {
        if (!lines_.isEmpty()) lines_.prepend(QByteArray());
        lines_.prepend(kOwnSection);
        return 1;
    }
    qsizetype place = section - lines_.begin() + 1;
    for (qsizetype i = place; i < lines_.size() && !isSection(lines_.at(i)); ++i)
        if (!lines_.at(i).trimmed().isEmpty()) place = i + 1;
    return place;
}

void IniText::setValue(const QByteArray& key, const QString& value) {
    const QByteArray line = key + '=' + writtenValue(value);
    if (const qsizetype old = lineOf(key); old >= 0)
        lines_[old] = line;
    else
        lines_.insert(placeForNew(), line);
}

QByteArray IniText::text() const {
    return lines_.isEmpty() ? QByteArray() : lines_.join('\n') + '\n';
}

}  // namespace platform
