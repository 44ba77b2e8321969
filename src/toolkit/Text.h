#pragma once

#include <QString>
#include <QStringView>

namespace Brindle {

/// Whether the character is one of a few.
inline bool IsAmong(QChar c, QStringView few) {
    for (const QChar one : few)
        if (one == c)
            return true;
    return false;
}

/// The view without the characters up to U+0020 at both ends, and nothing else: U+00A0 and its kin stay.
QStringView TrimmedView(QStringView text);

/// `TrimmedView` as a text of its own.
QString Trim(QStringView text);

/// The form in which duplicate keys are compared: upper-cased in full Unicode, then trimmed.
QString UpperTrimmed(QStringView text);

/// Replaces every occurrence of `before` in one pass, case-sensitively, left to right, without overlap. An empty
/// `before` replaces nothing. Linear in the length of the text.
void ReplaceAll(QString& text, QStringView before, QStringView after);

/// 0-based position of `marker` in `text` from `from` on, A to Z and a to z being the same; -1 when absent or empty.
/// Positions never shift: code unit is compared with code unit.
qsizetype IndexOfFolded(QStringView text, QStringView marker, qsizetype from = 0);

/// Whether `marker` occurs in `text`, A to Z and a to z being the same. An empty marker occurs nowhere.
bool ContainsFolded(QStringView text, QStringView marker);

/// Whether `marker` occurs in `text` as it stands. An empty marker occurs nowhere.
bool ContainsExact(QStringView text, QStringView marker);

/// Whether `text` begins with `prefix`, A to Z and a to z being the same.
bool StartsWithFolded(QStringView text, QStringView prefix);

/// The text of bytes in the Western 8-bit code page, Windows-1252 of the Encoding Standard (WHATWG): every byte is a
/// character.
QString FromWindows1252(const QByteArray& bytes);

} // namespace Brindle
