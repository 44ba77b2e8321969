#include "TextDecoder.h"

#include <QStringDecoder>

#include <array>
#include <optional>

namespace Brindle {

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

// Windows-1252 from 0x80 to 0x9F (WHATWG Encoding, index windows-1252); the other bytes are those of Latin-1.
constexpr std::array<char16_t, 32> windows1252{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                               0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                               0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                               0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString DecodeWindows1252(const QByteArray& bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text)
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0)
            c = QChar(windows1252.at(c.unicode() - 0x80U));
    return text;
}

QString DecodeWith(QStringDecoder& decode, const QByteArray& bytes) {
    QString text = decode(bytes);
    if (text.startsWith(u'\uFEFF'))
        text.remove(0, 1);
    return text;
}

QString Decode(QStringConverter::Encoding encoding, const QByteArray& bytes) {
    QStringDecoder decode(encoding);
    return DecodeWith(decode, bytes);
}

// The labels of Windows-1252 in the Encoding standard that pages really carry.
bool MeansWindows1252(const QByteArray& label) {
    for (const char* name : {"windows-1252", "cp1252", "x-cp1252", "iso-8859-1", "iso8859-1", "iso_8859-1", "iso88591",
                             "latin1", "l1", "us-ascii", "ascii", "ansi_x3.4-1968", "cp819", "ibm819", "iso-ir-100"})
        if (label == name)
            return true;
    return false;
}

// Labels whose meaning in the Encoding standard is wider than their name says.
QByteArray UsualName(const QByteArray& label) {
    static constexpr std::array<std::pair<const char*, const char*>, 9> names{{{"iso-8859-9", "windows-1254"},
                                                                               {"latin5", "windows-1254"},
                                                                               {"iso-8859-11", "windows-874"},
                                                                               {"tis-620", "windows-874"},
                                                                               {"gb2312", "gbk"},
                                                                               {"x-gbk", "gbk"},
                                                                               {"x-sjis", "shift_jis"},
                                                                               {"ks_c_5601-1987", "windows-949"},
                                                                               {"euc-kr", "windows-949"}}};
    for (const auto& [name, meaning] : names)
        if (label == name)
            return meaning;
    return label;
}

std::optional<QString> DecodeByLabel(const QByteArray& label, const QByteArray& bytes) {
    if (label.isEmpty())
        return std::nullopt;
    if (label == "utf-8" || label == "utf8" || label == "unicode-1-1-utf-8")
        return Decode(QStringConverter::Utf8, bytes);
    if (MeansWindows1252(label))
        return DecodeWindows1252(bytes);
    if (label == "utf-16" || label == "utf-16le" || label == "unicode")
        return Decode(bytes.startsWith("\xFE\xFF") ? QStringConverter::Utf16BE : QStringConverter::Utf16LE, bytes);
    if (label == "utf-16be")
        return Decode(QStringConverter::Utf16BE, bytes);
    QStringDecoder decode(UsualName(label).constData());
    if (!decode.isValid())
        return std::nullopt;
    return DecodeWith(decode, bytes);
}

std::optional<QString> DecodeByMark(const QByteArray& bytes) {
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return Decode(QStringConverter::Utf8, bytes);
    if (bytes.startsWith("\xFF\xFE"))
        return Decode(QStringConverter::Utf16LE, bytes);
    if (bytes.startsWith("\xFE\xFF"))
        return Decode(QStringConverter::Utf16BE, bytes);
    return std::nullopt;
}

// One attribute of a tag at `at`, lower-cased; the name is empty at the tag's end.
struct Attribute {
    QByteArray Name;
    QByteArray Value;
};

Attribute NextAttribute(const QByteArray& text, qsizetype& at) {
    const auto more = [&] { return at < text.size(); };
    while (more() && (IsSpace(text[at]) || text[at] == '/'))
        ++at;
    Attribute attribute;
    if (!more() || text[at] == '>')
        return attribute;
    while (more() && !IsSpace(text[at]) && text[at] != '/' && text[at] != '>' &&
           (text[at] != '=' || attribute.Name.isEmpty()))
        attribute.Name += text[at++];
    while (more() && IsSpace(text[at]))
        ++at;
    if (more() && text[at] == '=') {
        ++at;
        while (more() && IsSpace(text[at]))
            ++at;
        if (more() && (text[at] == '"' || text[at] == '\'')) {
            const char quote = text[at++];
            while (more() && text[at] != quote)
                attribute.Value += text[at++];
            ++at;
        } else {
            while (more() && !IsSpace(text[at]) && text[at] != '>')
                attribute.Value += text[at++];
        }
    }
    attribute.Name = attribute.Name.toLower();
    attribute.Value = attribute.Value.toLower();
    return attribute;
}

// The label that a <meta> at the page's beginning gives.
QByteArray MetaCharset(const QByteArray& bytes) {
    const QByteArray head = bytes.left(1024);
    const QByteArray lowered = head.toLower();
    qsizetype at = 0;
    while ((at = lowered.indexOf('<', at)) >= 0) {
        if (lowered.sliced(at).startsWith("<!--")) {
            const qsizetype end = lowered.indexOf("-->", at + 2);
            if (end < 0)
                return {};
            at = end + 3;
            continue;
        }
        ++at;
        const bool isMeta = lowered.sliced(at).startsWith("meta") && at + 4 < lowered.size() &&
                            (IsSpace(lowered[at + 4]) || lowered[at + 4] == '/');
        if (!isMeta) {
            // Other tags are passed attribute by attribute, so that a "<" inside a value does not count.
            if (at < lowered.size() && ((lowered[at] >= 'a' && lowered[at] <= 'z') || lowered[at] == '/')) {
                while (at < lowered.size() && !IsSpace(lowered[at]) && lowered[at] != '>')
                    ++at;
                while (!NextAttribute(head, at).Name.isEmpty()) {
                }
            }
            continue;
        }
        at += 4;
        QByteArray charset;
        QByteArray content;
        bool isContentType = false;
        for (Attribute a = NextAttribute(head, at); !a.Name.isEmpty(); a = NextAttribute(head, at)) {
            if (a.Name == "charset")
                charset = a.Value.trimmed();
            else if (a.Name == "content")
                content = CharsetOf(a.Value);
            else if (a.Name == "http-equiv")
                isContentType = a.Value == "content-type";
        }
        if (charset.isEmpty() && isContentType)
            charset = content;
        // A page whose <meta> could be read as ASCII is not in UTF-16, whatever it says.
        if (charset.startsWith("utf-16"))
            charset = "utf-8";
        if (!charset.isEmpty())
            return charset;
    }
    return {};
}

} // namespace

QByteArray CharsetOf(const QByteArray& contentType) {
    const QByteArray lowered = contentType.toLower();
    qsizetype at = 0;
    while ((at = lowered.indexOf("charset", at)) >= 0) {
        at += 7;
        while (at < lowered.size() && IsSpace(lowered[at]))
            ++at;
        if (at >= lowered.size() || lowered[at] != '=')
            continue;
        QByteArray value = lowered.sliced(at + 1).trimmed();
        if (value.startsWith('"') || value.startsWith('\'')) {
            const qsizetype end = value.indexOf(value[0], 1);
            return end < 0 ? QByteArray() : value.sliced(1, end - 1).trimmed();
        }
        qsizetype end = 0;
        while (end < value.size() && !IsSpace(value[end]) && value[end] != ';')
            ++end;
        return value.first(end);
    }
    return {};
}

QString DecodePage(const QByteArray& bytes, const QByteArray& contentType) {
    if (const auto text = DecodeByLabel(CharsetOf(contentType), bytes))
        return *text;
    if (const auto text = DecodeByMark(bytes))
        return *text;
    if (const auto text = DecodeByLabel(MetaCharset(bytes), bytes))
        return *text;
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = utf8(bytes);
    return utf8.hasError() ? DecodeWindows1252(bytes) : text;
}

} // namespace Brindle
